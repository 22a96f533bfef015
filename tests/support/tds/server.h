#pragma once

#include "support/tds/answer.h"
#include "support/tds/login.h"
#include "support/tds/packet.h"

#include <QtCore/QHash>
#include <QtCore/QStringList>

#include <list>
#include <mutex>
#include <thread>

namespace corvane::test::tds {

/// What a server is like; fixed once it listens.
struct ServerSettings
{
    QHash<QString, QString> users{{QStringLiteral("demo"), QStringLiteral("demo")}};
    /// The answers of a new session with that database; DatabaseError when there is none of the
    /// name.
    std::function<Answerer(const QString &database)> open;
    Certificate certificate; ///< empty: the server does not encrypt
    bool requiresEncryption = false;
    int packetSize = 4096; ///< of everything behind the logon; 512 at least
};

/// A server on the loopback interface that speaks TDS 7.4 ([MS-TDS]) as far as reports need it:
/// pre-login, LOGIN7 with SQL accounts, TLS, batches, calls of procedures, attention. What it does
/// not implement it refuses and remembers. Every connection has a thread of its own.
class Server
{
public:
    /// Listens on a free port. qFatal when it cannot.
    explicit Server(ServerSettings settings);
    /// Ends all connections.
    ~Server();
    Q_DISABLE_COPY_MOVE(Server)

    /// "127.0.0.1,PORT", as connection texts name a server.
    QString address() const;
    const ServerSettings &settings() const { return m_settings; }

    /// Answers this statement, or the procedure of this name, without asking the database.
    void script(const QString &statement, const Answer &answer);
    std::optional<Answer> scripted(const QString &statement) const;

    Cutter &cutter() { return m_cutter; }
    /// From now on connections are accepted and messages read, and nothing is ever answered.
    void setSilent(bool silent) { m_silent = silent; }
    bool isSilent() const { return m_silent; }

    /// What clients sent that this server does not implement; a test expects none.
    QStringList refused() const;
    /// All statements and calls so far, in order.
    QStringList statements() const;
    /// The logons so far, without their passwords: those accepted, and all that were tried.
    QList<Login> logins() const;
    QList<Login> attempts() const;

    void noteRefused(const QString &what);
    void noteStatement(const QString &what);
    enum class Logon { Tried, Accepted };
    void noteLogin(Login login, Logon logon);

private:
    struct Client
    {
        explicit Client(int descriptor)
            : socket(descriptor)
        {
        }
        Socket socket;
        std::thread thread;
    };

    void acceptClients();

    const ServerSettings m_settings;
    Cutter m_cutter;
    std::atomic<bool> m_silent = false;
    int m_descriptor = -1;
    mutable std::mutex m_mutex; ///< guards everything below
    QHash<QString, Answer> m_scripts;
    QStringList m_refused;
    QStringList m_statements;
    QList<Login> m_logins;
    QList<Login> m_attempts;
    std::list<Client> m_clients;
    std::thread m_accepting;
};

} // namespace corvane::test::tds

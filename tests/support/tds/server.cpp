#include "support/tds/server.h"

#include "support/tds/session.h"

#include <QtCore/QtEndian>

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

namespace corvane::test::tds {

namespace {

int listeningSocket()
{
    const int descriptor = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (bind(descriptor, reinterpret_cast<sockaddr *>(&address), sizeof address) != 0
        || listen(descriptor, SOMAXCONN) != 0)
        qFatal("no port of the loopback interface is free");
    return descriptor;
}

} // namespace

Server::Server(ServerSettings settings)
    : m_settings(std::move(settings))
    , m_descriptor(listeningSocket())
    , m_accepting([this] { acceptClients(); })
{
}

Server::~Server()
{
    shutdown(m_descriptor, SHUT_RDWR);
    m_accepting.join();
    close(m_descriptor);
    for (Client &client : m_clients) {
        client.socket.shutDown();
        client.thread.join();
    }
}

QString Server::address() const
{
    sockaddr_in address{};
    socklen_t size = sizeof address;
    getsockname(m_descriptor, reinterpret_cast<sockaddr *>(&address), &size);
    return QStringLiteral("127.0.0.1,%1").arg(qFromBigEndian<quint16>(address.sin_port));
}

/// Ends when the listening socket is shut down.
void Server::acceptClients()
{
    for (int descriptor;
         (descriptor = accept4(m_descriptor, nullptr, nullptr, SOCK_CLOEXEC)) >= 0;) {
        const int on = 1;
        setsockopt(descriptor, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
        const std::lock_guard lock(m_mutex);
        Client &client = m_clients.emplace_back(descriptor);
        client.thread = std::thread([this, &client] { Session(*this, client.socket).run(); });
    }
}

void Server::script(const QString &statement, const Answer &answer)
{
    const std::lock_guard lock(m_mutex);
    m_scripts[statement] = answer;
}

std::optional<Answer> Server::scripted(const QString &statement) const
{
    const std::lock_guard lock(m_mutex);
    const auto found = m_scripts.constFind(statement);
    return found == m_scripts.constEnd() ? std::nullopt : std::optional(*found);
}

QStringList Server::refused() const
{
    const std::lock_guard lock(m_mutex);
    return m_refused;
}

QStringList Server::statements() const
{
    const std::lock_guard lock(m_mutex);
    return m_statements;
}

QList<Login> Server::logins() const
{
    const std::lock_guard lock(m_mutex);
    return m_logins;
}

QList<Login> Server::attempts() const
{
    const std::lock_guard lock(m_mutex);
    return m_attempts;
}

void Server::noteRefused(const QString &what)
{
    const std::lock_guard lock(m_mutex);
    m_refused += what;
}

void Server::noteStatement(const QString &what)
{
    const std::lock_guard lock(m_mutex);
    m_statements += what;
}

void Server::noteLogin(Login login, Logon logon)
{
    login.password.clear();
    const std::lock_guard lock(m_mutex);
    (logon == Logon::Accepted ? m_logins : m_attempts) += login;
}

} // namespace corvane::test::tds

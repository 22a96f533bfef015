#pragma once

#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>

namespace corvane::test {

/// A PostgreSQL server of the test's own, from the system's packages: data folder and socket in a
/// temporary folder, a free port of 127.0.0.1, an unprivileged account when the test runs as root.
/// Every connection finds schema "dbo" on its search path. Stopped with the object, or with the
/// test program when that crashes.
///
/// A call that returns a QString returns an empty one when all went well, else what went wrong.
class PostgresServer
{
public:
    static constexpr auto kUser = "clinic";
    static constexpr auto kPassword = "harb{o}r 1";

    PostgresServer();
    ~PostgresServer();
    Q_DISABLE_COPY_MOVE(PostgresServer)

    /// Makes the data folder at the first call; later calls start the server again at the same
    /// port. `dateOrder` is how it reads and writes dates: 0 month-day-year, 1 day-month-year, 2
    /// year-month-day.
    QString start(int dateOrder = 0);
    /// Ends every session and then the server.
    void stop();

    /// An empty database with a schema "dbo". Lower-case names, so that queries need no quotes.
    QString createDatabase(const QString &name);
    /// Runs statements through the server's own command-line client; stops at the first that fails.
    QString run(const QString &database, const QByteArray &statements);
    /// Makes the database and copies every table of a SQLite file into its schema "dbo".
    QString loadTables(const QString &database, const QString &sqliteFile);

    int port() const { return m_port; }
    /// "127.0.0.1,PORT", as DataSource of corvane.ini has it.
    QString address() const { return QStringLiteral("127.0.0.1,%1").arg(m_port); }
    /// The connection text that start-up would build; `password` is the clear one.
    QString connectionText(
        const QString &database, const QString &password = QString::fromLatin1(kPassword)) const;
    /// Section SQLServer of corvane.ini for a database.
    QByteArray configuration(const QString &database) const;
    /// Folder of the socket, which lets every local account in without a password.
    QString socketFolder() const { return m_folder.path(); }

private:
    QString path(const QString &name) const { return m_folder.filePath(name); }
    QString makeDataFolder();
    QString waitUntilReady();
    QString finished(QProcess &process, const QString &program, const QStringList &arguments,
        const QByteArray &input = {});

    QTemporaryDir m_folder;
    QProcess m_process;
    int m_port = 0;
};

} // namespace corvane::test

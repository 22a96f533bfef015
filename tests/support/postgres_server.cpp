#include "support/postgres_server.h"

#include "shared/scramble.h"
#include "support/sqlite_copy.h"

#include <QtCore/QDeadlineTimer>
#include <QtCore/QDir>
#include <QtCore/QFile>

#include <arpa/inet.h>
#include <array>
#include <csignal>
#include <pwd.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace corvane::test {

namespace {

constexpr int kPatience = 60'000;
constexpr std::array kDateStyles{"ISO, MDY", "ISO, DMY", "ISO, YMD"};

/// The newest version's programs: Debian keeps each version in a folder of its own.
QString programFolder()
{
    const QDir versions(QStringLiteral("/usr/lib/postgresql"));
    const QStringList names = versions.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    return names.isEmpty() ? QString() : versions.filePath(names.last() + u"/bin");
}

/// The server refuses to run as root; everybody else runs it as they are.
const passwd *account()
{
    return geteuid() == 0 ? getpwnam("nobody") : nullptr;
}

/// Before a program starts: drops root, and lets it end with this test even when that crashes.
void prepare(QProcess &process)
{
    const passwd *user = account();
    const uid_t uid = user ? user->pw_uid : geteuid();
    const gid_t gid = user ? user->pw_gid : getegid();
    const bool drop = user != nullptr;
    process.setChildProcessModifier([=] {
        if (drop && (setgid(gid) != 0 || setuid(uid) != 0))
            _exit(126);
        prctl(PR_SET_PDEATHSIG, SIGQUIT);
    });
}

/// A port that nobody listens on at this moment; 0 when there is none.
int freePort()
{
    const int handle = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto *any = reinterpret_cast<sockaddr *>(&address);
    const bool known = bind(handle, any, size) == 0 && getsockname(handle, any, &size) == 0;
    close(handle);
    return known ? ntohs(address.sin_port) : 0;
}

} // namespace

PostgresServer::PostgresServer() = default;

PostgresServer::~PostgresServer()
{
    stop();
}

QString PostgresServer::finished(QProcess &process, const QString &program,
    const QStringList &arguments, const QByteArray &input)
{
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.setWorkingDirectory(m_folder.path());
    process.start(program, arguments);
    process.write(input);
    process.closeWriteChannel();
    if (!process.waitForFinished(kPatience))
        return program % u": " % process.errorString();
    if (process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0)
        return {};
    return program % u": " % QString::fromUtf8(process.readAll()).trimmed();
}

QString PostgresServer::makeDataFolder()
{
    if (programFolder().isEmpty())
        return QStringLiteral("PostgreSQL is not installed; run scripts/install-deps --tests");
    m_port = freePort();
    QFile secret(path(QStringLiteral("secret")));
    if (m_port == 0 || !secret.open(QIODevice::WriteOnly) || secret.write(kPassword) < 0)
        return QStringLiteral("no free port, or the temporary folder cannot be written");
    secret.close();
    if (const passwd *user = account()) {
        for (const QString &name : {m_folder.path(), secret.fileName()})
            if (chown(QFile::encodeName(name).constData(), user->pw_uid, user->pw_gid) != 0)
                return QStringLiteral("the temporary folder cannot be handed over");
    }
    QProcess process;
    prepare(process);
    return finished(process, programFolder() + u"/initdb",
        {QStringLiteral("--pgdata"), path(QStringLiteral("data")), QStringLiteral("--username"),
            QString::fromLatin1(kUser), QStringLiteral("--pwfile"), secret.fileName(),
            QStringLiteral("--encoding=UTF8"), QStringLiteral("--locale=C"),
            QStringLiteral("--auth-local=trust"), QStringLiteral("--auth-host=scram-sha-256"),
            QStringLiteral("--no-sync"), QStringLiteral("--no-instructions")});
}

QString PostgresServer::start(int dateOrder)
{
    stop();
    if (m_port == 0)
        if (const QString fault = makeDataFolder(); !fault.isEmpty())
            return fault;
    QStringList arguments{QStringLiteral("-D"), path(QStringLiteral("data"))};
    const auto set = [&](const QString &setting) { arguments << QStringLiteral("-c") << setting; };
    set(QStringLiteral("listen_addresses=127.0.0.1"));
    set(QStringLiteral("port=%1").arg(m_port));
    set(u"unix_socket_directories=" + m_folder.path());
    set(QStringLiteral("search_path=dbo, public"));
    set(u"datestyle=" + QString::fromLatin1(kDateStyles.at(size_t(dateOrder))));
    set(QStringLiteral("timezone=UTC"));
    set(QStringLiteral("fsync=off"));
    set(QStringLiteral("full_page_writes=off"));
    prepare(m_process);
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    m_process.setStandardOutputFile(path(QStringLiteral("log")));
    m_process.setWorkingDirectory(m_folder.path());
    m_process.start(programFolder() + u"/postgres", arguments);
    return waitUntilReady();
}

/// Line 8 of the server's process file says when it takes connections.
QString PostgresServer::waitUntilReady()
{
    constexpr int kStatusLine = 7;
    for (const QDeadlineTimer deadline(kPatience);;) {
        QFile file(path(QStringLiteral("data/postmaster.pid")));
        if (file.open(QIODevice::ReadOnly)) {
            const QByteArrayList lines = file.readAll().split('\n');
            if (lines.value(0).toLongLong() == m_process.processId()
                && lines.value(kStatusLine).startsWith("ready"))
                return {};
        }
        if (m_process.state() == QProcess::NotRunning || deadline.hasExpired()) {
            QFile log(path(QStringLiteral("log")));
            const QByteArray words = log.open(QIODevice::ReadOnly) ? log.readAll() : QByteArray();
            return QStringLiteral("PostgreSQL does not run: %1 %2")
                .arg(m_process.errorString(), QString::fromUtf8(words));
        }
        m_process.waitForFinished(20);
    }
}

void PostgresServer::stop()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    ::kill(pid_t(m_process.processId()), SIGINT); // "fast": ends the sessions, too
    if (!m_process.waitForFinished(kPatience)) {
        m_process.kill();
        m_process.waitForFinished(kPatience);
    }
}

QString PostgresServer::createDatabase(const QString &name)
{
    const QString fault = run(QStringLiteral("postgres"), "CREATE DATABASE " + name.toUtf8());
    return fault.isEmpty() ? run(name, "CREATE SCHEMA dbo") : fault;
}

QString PostgresServer::run(const QString &database, const QByteArray &statements)
{
    QProcess process;
    return finished(process, QStringLiteral("psql"),
        {QStringLiteral("--no-psqlrc"), QStringLiteral("--quiet"),
            QStringLiteral("--set=ON_ERROR_STOP=1"), u"--host=" + m_folder.path(),
            QStringLiteral("--port=%1").arg(m_port), u"--username=" + QString::fromLatin1(kUser),
            u"--dbname=" + database},
        statements);
}

QString PostgresServer::loadTables(const QString &database, const QString &sqliteFile)
{
    QString fault = createDatabase(database);
    if (!fault.isEmpty())
        return fault;
    QByteArray statements;
    const QString copyFault = copyStatements(sqliteFile, statements);
    return copyFault.isEmpty() ? run(database, statements) : copyFault;
}

QString PostgresServer::connectionText(const QString &database, const QString &password) const
{
    return u"Provider=PostgreSQL Unicode;Data Source=" % address() % u";Initial Catalog=" % database
        % u";User Id=" % QString::fromLatin1(kUser) % u";Password=" % password % u"; ";
}

QByteArray PostgresServer::configuration(const QString &database) const
{
    return "[SQLServer]\nProvider=PostgreSQL Unicode\nDataSource=" + address().toLatin1()
        + "\nInitialCatalog=" + database.toUtf8() + "\nUID=" + kUser
        + "\nPassword=" + scramblePW(QString::fromLatin1(kPassword)).toLatin1() + '\n';
}

} // namespace corvane::test

#include "printing/print_server.h"

#include <QtCore/QDeadlineTimer>
#include <QtCore/QDir>
#include <QtCore/QFile>

namespace corvane::test {

namespace {

constexpr int kPatience = 20'000;

/// Everything of the server's lies in FOLDER.
const char *const kFiles = R"(ServerRoot FOLDER/root
CacheDir FOLDER/cache
StateDir FOLDER/state
RequestRoot FOLDER/spool
TempDir FOLDER/tmp
ServerBin FOLDER/bin
Printcap FOLDER/printcap
AccessLog FOLDER/access_log
ErrorLog FOLDER/error_log
PageLog FOLDER/page_log
)";

const char *const kServer = R"(Listen FOLDER/socket
Browsing No
WebInterface No
DefaultAuthType None
<Location />
Order deny,allow
</Location>
<Policy default>
<Limit All>
Order deny,allow
</Limit>
</Policy>
)";

/// The part of a queue that would speak to the printer (cups "backend"): keeps job, title, copies
/// and options.
const char *const kKeeper = R"(#!/bin/sh
[ $# -eq 0 ] && exit 0
cat "${6:--}" > "FOLDER/out/job-$1.pdf"
printf '%s\n' "$3" "$4" "$5" > "FOLDER/out/new"
mv "FOLDER/out/new" "FOLDER/out/job-$1.txt"
)";

const char *const kQueue = R"(<Printer NAME>
Info NAME
DeviceURI keeper:/
State Idle
Accepting ACCEPTING
Shared No
ErrorPolicy abort-job
OpPolicy default
</Printer>
)";

} // namespace

PrintServer::PrintServer() = default;

PrintServer::~PrintServer()
{
    stop();
}

bool PrintServer::write(const QString &name, const QByteArray &bytes)
{
    QFile file(path(name));
    if (!QDir().mkpath(QFileInfo(file).path()) || !file.open(QIODevice::WriteOnly))
        return false;
    return file.write(QByteArray(bytes).replace("FOLDER", QFile::encodeName(m_folder.path()))) >= 0;
}

void PrintServer::addQueue(const QString &name, bool acceptsJobs, const QByteArray &description)
{
    m_queues += QByteArray(kQueue)
                    .replace("NAME", name.toUtf8())
                    .replace("ACCEPTING", acceptsJobs ? "Yes" : "No");
    if (!description.isEmpty())
        write(QStringLiteral("root/ppd/%1.ppd").arg(name), description);
}

QString PrintServer::start(Queues queues)
{
    stop();
    for (const char *folder : {"cache", "state", "spool", "tmp", "out", "bin/filter"})
        QDir(m_folder.path()).mkpath(QString::fromLatin1(folder));
    QFile::link(QStringLiteral("/usr/lib/cups/daemon"), path(QStringLiteral("bin/daemon")));
    const QString keeper = QStringLiteral("bin/backend/keeper");
    if (!write(QStringLiteral("files.conf"), kFiles)
        || !write(QStringLiteral("cupsd.conf"), kServer)
        || !write(
            QStringLiteral("root/printers.conf"), queues == Queues::Added ? m_queues : QByteArray())
        || !write(keeper, kKeeper))
        return QStringLiteral("its files cannot be written");
    // For its owner alone: then the server runs it as that user, who may write here.
    QFile::setPermissions(path(keeper), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);

    m_process.setProcessChannelMode(QProcess::MergedChannels);
    m_process.start(QStringLiteral("/usr/sbin/cupsd"),
        {QStringLiteral("-f"), QStringLiteral("-c"), path(QStringLiteral("cupsd.conf")),
            QStringLiteral("-s"), path(QStringLiteral("files.conf"))});
    const QString socket = path(QStringLiteral("socket"));
    for (const QDeadlineTimer deadline(kPatience); !QFile::exists(socket);) {
        if (m_process.state() == QProcess::NotRunning || deadline.hasExpired())
            return QStringLiteral("cupsd does not run: ") + m_process.errorString()
                + QString::fromUtf8(m_process.readAll());
        m_process.waitForFinished(20);
    }
    qputenv("CUPS_SERVER", QFile::encodeName(socket));
    return {};
}

void PrintServer::stop()
{
    if (m_process.state() != QProcess::NotRunning) {
        m_process.terminate();
        if (!m_process.waitForFinished(kPatience)) {
            m_process.kill();
            m_process.waitForFinished(kPatience);
        }
    }
    QFile::remove(path(QStringLiteral("socket")));
}

std::optional<PrintedJob> PrintServer::takeJob()
{
    const QStringList jobs
        = QDir(path(QStringLiteral("out")))
              .entryList({QStringLiteral("job-*.txt")}, QDir::Files, QDir::Time | QDir::Reversed);
    if (jobs.size() <= m_taken)
        return {};
    const QString job = path(QStringLiteral("out/") + jobs[m_taken++]);
    QFile file(job);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n');
    return PrintedJob{
        job.chopped(4) + QStringLiteral(".pdf"), lines.value(0), lines.value(1), lines.value(2)};
}

QByteArray letterPrinter()
{
    QFile file(QStringLiteral(CORVANE_SOURCE_DIR "/tests/printing/data/letter-printer.ppd"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace corvane::test

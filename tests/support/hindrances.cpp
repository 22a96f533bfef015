#include "support/hindrances.h"

#include <QtCore/QFile>

#ifndef Q_OS_WIN
#include <csignal>

#include <sys/stat.h>
#include <unistd.h>
#endif

namespace corvane::test {

#ifdef Q_OS_WIN

FullDisk::FullDisk(qint64)
{
    qFatal("no disk can be filled here; name the case in tests/windows/left-out.txt");
}

FullDisk::~FullDisk() = default;
Unprivileged::Unprivileged() = default;
Unprivileged::~Unprivileged() = default;

QStringList asUnprivileged(const QStringList &command)
{
    return command;
}

bool makePipe(const QString &)
{
    return false;
}

#else

FullDisk::FullDisk(qint64 bytes)
    : m_handler(std::signal(SIGXFSZ, SIG_IGN))
{
    getrlimit(RLIMIT_FSIZE, &m_before);
    const rlimit tight{rlim_t(bytes), m_before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &tight);
}

FullDisk::~FullDisk()
{
    setrlimit(RLIMIT_FSIZE, &m_before);
    std::signal(SIGXFSZ, m_handler);
}

Unprivileged::Unprivileged()
{
    constexpr uid_t kNobody = 65534;
    m_became = geteuid() == 0 && setresuid(kNobody, kNobody, 0) == 0;
}

Unprivileged::~Unprivileged()
{
    if (m_became && setresuid(0, 0, 0) != 0)
        qFatal("cannot become root again");
}

QStringList asUnprivileged(const QStringList &command)
{
    if (geteuid() != 0)
        return command;
    return QStringList {QStringLiteral("setpriv"), QStringLiteral("--reuid=65534"), QStringLiteral("--regid=65534"),
               QStringLiteral("--clear-groups")} + command;
}

bool makePipe(const QString &fileName)
{
    return ::mkfifo(QFile::encodeName(fileName).constData(), 0600) == 0;
}

#endif

} // namespace corvane::test

#include "platform/files/file_hold.h"

#include <QtCore/QFile>
#include <QtCore/QThread>

#ifndef Q_OS_WIN
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace corvane {

#ifdef Q_OS_WIN

HoldResult holdOpenFile(int)
{
    return HoldResult::Unknown;
}

FileHold::FileHold(const QString &) { }

FileHold::~FileHold() = default;

#else

namespace {

constexpr int kAttempts = 100;
constexpr unsigned long kPauseMs = 20;

bool isStillThere(int descriptor, const QByteArray &encodedName)
{
    struct stat held
    {
    };
    struct stat named
    {
    };
    return ::fstat(descriptor, &held) == 0 && ::stat(encodedName.constData(), &named) == 0
        && held.st_dev == named.st_dev && held.st_ino == named.st_ino;
}

} // namespace

HoldResult holdOpenFile(int descriptor)
{
    if (::flock(descriptor, LOCK_EX | LOCK_NB) == 0)
        return HoldResult::Held;
    return errno == EWOULDBLOCK ? HoldResult::HeldByAnother : HoldResult::Unknown;
}

FileHold::FileHold(const QString &fileName)
{
    const QByteArray name = QFile::encodeName(fileName);
    for (int i = 0; i < kAttempts; ++i) {
        m_isHeld = attempt(name) != HoldResult::HeldByAnother;
        if (m_isHeld)
            return;
        letGo();
        QThread::msleep(kPauseMs);
    }
}

FileHold::~FileHold()
{
    letGo();
}

HoldResult FileHold::attempt(const QByteArray &encodedName)
{
    // Network file systems lock only what is open for writing; where that is refused, reading will
    // do.
    m_descriptor = ::open(encodedName.constData(), O_RDWR | O_CLOEXEC | O_NONBLOCK);
    if (m_descriptor < 0)
        m_descriptor = ::open(encodedName.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (m_descriptor < 0)
        return HoldResult::Unknown;
    const HoldResult result = holdOpenFile(m_descriptor);
    // Whoever had it may have replaced the file: what is held then is the old one, and of no use.
    return result == HoldResult::Held && !isStillThere(m_descriptor, encodedName)
        ? HoldResult::HeldByAnother
        : result;
}

void FileHold::letGo()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
    m_descriptor = -1;
}

#endif

} // namespace corvane

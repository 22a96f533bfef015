#include "platform/files/file_hold.h"

#include <QtCore/QFile>

#include <cerrno>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace corvane {

namespace {

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

HoldResult FileHold::attempt(const QString &fileName)
{
    // Network file systems lock only what is open for writing; where that is refused, reading will
    // do.
    const QByteArray name = QFile::encodeName(fileName);
    int descriptor = ::open(name.constData(), O_RDWR | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0)
        descriptor = ::open(name.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    m_file = descriptor;
    if (descriptor < 0)
        return HoldResult::Unknown;
    const HoldResult result = holdOpenFile(descriptor);
    // Whoever had it may have replaced the file: what is held then is the old one, and of no use.
    return result == HoldResult::Held && !isStillThere(descriptor, name) ? HoldResult::HeldByAnother
                                                                         : result;
}

void FileHold::letGo()
{
    if (m_file != kNone)
        ::close(int(m_file));
    m_file = kNone;
}

} // namespace corvane

#include "platform/files/placing.h"

#include "platform/files/file_hold.h"

#include <QtCore/QFileInfo>

#include <cerrno>
#include <filesystem>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace corvane {

namespace {

SystemFault fault(const std::error_code &error, QFileDevice::FileError kind)
{
    return error ? SystemFault{kind, qt_error_string(error.value())} : SystemFault();
}

std::filesystem::path pathOf(const QString &name)
{
    return QFile(name).filesystemFileName();
}

/// So that the new name, too, outlives a power cut. Without it the old file might be back, whole.
void flushFolder(const QString &folder)
{
    const int descriptor
        = ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return;
    ::fsync(descriptor);
    ::close(descriptor);
}

} // namespace

/// What replaces a file that not everybody may read is its owner's alone until it has the same
/// rights.
SystemFault createFor(const QString &target, const QString &name, QFile &file)
{
    constexpr auto kMode = QIODevice::ReadWrite | QIODevice::NewOnly | QIODevice::Unbuffered;
    file.setFileName(name);
    const bool isOpen = QFile::exists(target)
        ? file.open(kMode, QFile::ReadOwner | QFile::WriteOwner)
        : file.open(kMode);
    return isOpen ? SystemFault() : SystemFault{file.error(), file.errorString()};
}

void takeOverRights(QFile &file, const QString &target)
{
    struct stat status
    {
    };
    if (::stat(QFile::encodeName(target).constData(), &status) == 0
        && ::fchown(file.handle(), status.st_uid, status.st_gid) != 0) {
        [[maybe_unused]] const int groupToo = ::fchown(file.handle(), uid_t(-1), status.st_gid);
    }
    file.setPermissions(QFile::permissions(target));
}

/// A network disk may tell only now that it is full. Some file systems cannot be asked at all.
SystemFault flushToDisk(QFile &file)
{
    if (::fsync(file.handle()) == 0 || errno == EINVAL || errno == ENOSYS || errno == EOPNOTSUPP)
        return {};
    return {errno == ENOSPC ? QFileDevice::ResourceError : QFileDevice::WriteError,
        qt_error_string(errno)};
}

SystemFault moveOnto(const QString &name, const QString &target)
{
    std::error_code error;
    std::filesystem::rename(pathOf(name), pathOf(target), error);
    if (!error)
        flushFolder(QFileInfo(target).absolutePath());
    return fault(error, QFileDevice::RenameError);
}

SystemFault keepUnder(const QString &second, const QString &name)
{
    std::error_code error;
    std::filesystem::create_hard_link(pathOf(name), pathOf(second), error);
    if (error)
        std::filesystem::copy_file(pathOf(name), pathOf(second), error);
    return fault(error, QFileDevice::CopyError);
}

/// Whoever still writes a file holds it; a program that was killed holds nothing any more.
void removeIfAbandoned(const QString &name)
{
    const QByteArray path = QFile::encodeName(name);
    constexpr int kCarefully = O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW;
    int descriptor = ::open(path.constData(), O_RDWR | kCarefully);
    if (descriptor < 0)
        descriptor = ::open(path.constData(), O_RDONLY | kCarefully);
    if (descriptor < 0)
        return;
    struct stat status
    {
    };
    if (::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode)
        && holdOpenFile(descriptor) == HoldResult::Held)
        ::unlink(path.constData());
    ::close(descriptor);
}

bool isOpenElsewhere(const QString &, OpenUse)
{
    return false;
}

} // namespace corvane

#include "shared/file_stamp.h"

#ifdef Q_OS_WIN
#include <QtCore/QDateTime>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#else
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace corvane {

#ifdef Q_OS_WIN

FileStamp fileStamp(const QByteArray &encodedPath)
{
    const QFileInfo info(QFile::decodeName(encodedPath));
    if (!info.exists())
        return {};
    return {0, 0, 1, info.size(), info.metadataChangeTime().toMSecsSinceEpoch(), info.lastModified().toMSecsSinceEpoch()};
}

FileWatch::FileWatch(const QByteArray &encodedPath)
    : m_encodedPath(encodedPath)
    , m_stamp(look())
{
}

FileWatch::~FileWatch() = default;

FileStamp FileWatch::look() const
{
    return fileStamp(m_encodedPath);
}

#else

namespace {

FileStamp stampOf(const struct stat &status)
{
    const auto nanoseconds = [](const timespec &t) { return qint64(t.tv_sec) * 1'000'000'000 + t.tv_nsec; };
    return {quint64(status.st_dev), quint64(status.st_ino), quint64(status.st_nlink), qint64(status.st_size),
        nanoseconds(status.st_ctim), nanoseconds(status.st_mtim)};
}

} // namespace

FileStamp fileStamp(const QByteArray &encodedPath)
{
    struct stat status {};
    return ::stat(encodedPath.constData(), &status) == 0 ? stampOf(status) : FileStamp();
}

FileWatch::FileWatch(const QByteArray &encodedPath)
    : m_encodedPath(encodedPath)
    , m_descriptor(::open(encodedPath.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK))
    , m_stamp(look())
{
}

FileWatch::~FileWatch()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

FileStamp FileWatch::look() const
{
    struct stat status {};
    if (m_descriptor < 0)
        return fileStamp(m_encodedPath);
    return ::fstat(m_descriptor, &status) == 0 ? stampOf(status) : FileStamp();
}

#endif

bool FileWatch::hasChanged() const
{
    return look() != m_stamp;
}

} // namespace corvane

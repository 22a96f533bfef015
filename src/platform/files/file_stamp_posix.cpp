#include "platform/files/file_stamp.h"

#include <QtCore/QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace corvane {

namespace {

FileStamp stampOf(const struct stat &status)
{
    const auto nanoseconds = [](const timespec &t) { return qint64(t.tv_sec) * 1'000'000'000 + t.tv_nsec; };
    return {quint64(status.st_dev), quint64(status.st_ino), quint64(status.st_nlink), qint64(status.st_size),
        nanoseconds(status.st_ctim), nanoseconds(status.st_mtim)};
}

FileStamp stampOf(const QByteArray &encodedPath)
{
    struct stat status {};
    return ::stat(encodedPath.constData(), &status) == 0 ? stampOf(status) : FileStamp();
}

} // namespace

FileStamp fileStamp(const QString &path)
{
    return stampOf(QFile::encodeName(path));
}

/// By the open file, a third of the price of a path. Where it cannot be kept open the path is looked at.
class FileWatch::Look
{
public:
    explicit Look(const QString &path)
        : m_encodedPath(QFile::encodeName(path))
        , m_descriptor(::open(m_encodedPath.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK))
    {
    }

    ~Look()
    {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
    }
    Q_DISABLE_COPY_MOVE(Look)

    FileStamp stamp() const
    {
        struct stat status {};
        if (m_descriptor < 0)
            return stampOf(m_encodedPath);
        return ::fstat(m_descriptor, &status) == 0 ? stampOf(status) : FileStamp();
    }

private:
    QByteArray m_encodedPath;
    int m_descriptor;
};

FileWatch::FileWatch(const QString &path)
    : m_look(std::make_unique<Look>(path))
    , m_stamp(look())
{
}

FileWatch::~FileWatch() = default;

FileStamp FileWatch::look() const
{
    return m_look->stamp();
}

} // namespace corvane

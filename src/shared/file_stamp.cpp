#include "shared/file_stamp.h"

#ifdef Q_OS_WIN
#include <QtCore/QDateTime>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#else
#include <sys/stat.h>
#endif

namespace corvane {

#ifdef Q_OS_WIN

FileStamp fileStamp(const QByteArray &encodedPath)
{
    const QFileInfo info(QFile::decodeName(encodedPath));
    if (!info.exists())
        return {};
    return {0, 0, info.size(), info.metadataChangeTime().toMSecsSinceEpoch(), info.lastModified().toMSecsSinceEpoch()};
}

#else

FileStamp fileStamp(const QByteArray &encodedPath)
{
    struct stat status {};
    if (::stat(encodedPath.constData(), &status) != 0)
        return {};
    const auto nanoseconds = [](const timespec &t) { return qint64(t.tv_sec) * 1'000'000'000 + t.tv_nsec; };
    return {quint64(status.st_dev), quint64(status.st_ino), qint64(status.st_size), nanoseconds(status.st_ctim),
        nanoseconds(status.st_mtim)};
}

#endif

} // namespace corvane

#pragma once

#include <QtCore/QString>

namespace corvane {

/// Identity, size and change times of a file: two equal stamps mean the same unchanged file.
struct FileStamp {
    quint64 device = 0;
    quint64 inode = 0;
    quint64 links = 0; ///< 0: replaced or deleted while it was open
    qint64 size = -1; ///< -1: no such file
    qint64 changed = 0;
    qint64 modified = 0;

    bool exists() const { return size >= 0; }
    bool operator==(const FileStamp &) const = default;
};

/// One system call that walks the path. `encodedPath` as QFile::encodeName gives it.
FileStamp fileStamp(const QByteArray &encodedPath);

/// Tells a file's change at a third of that price, cheap enough for once per record, by keeping the file
/// open: a file that was written to, replaced, renamed or deleted is noticed. Where a file cannot be kept
/// open the path is looked at instead.
class FileWatch
{
public:
    explicit FileWatch(const QByteArray &encodedPath);
    ~FileWatch();
    Q_DISABLE_COPY_MOVE(FileWatch)

    /// Whether the file differs from what it was when the watch began.
    bool hasChanged() const;

private:
    FileStamp look() const;

    QByteArray m_encodedPath;
    int m_descriptor = -1;
    FileStamp m_stamp;
};

} // namespace corvane

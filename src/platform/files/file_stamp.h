#pragma once

#include <QtCore/QString>

#include <memory>

namespace corvane {

/// Identity, size and change times of a file: two equal stamps mean the same unchanged file.
struct FileStamp {
    quint64 device = 0;
    quint64 inode = 0;
    quint64 links = 0; ///< 0: replaced or deleted while it was open
    qint64 size = -1; ///< -1: no such file
    qint64 changed = 0; ///< on Windows, which does not tell it here, when the file was made
    qint64 modified = 0;

    bool exists() const { return size >= 0; }
    bool operator==(const FileStamp &) const = default;
};

/// What the path leads to now.
FileStamp fileStamp(const QString &path);

/// Tells a file's change for much less than fileStamp() costs, cheap enough for once per record: a file that
/// was written to, replaced, renamed or deleted is noticed. It hinders nobody from doing so. Where the system
/// lets files be replaced that are open this one is kept open; else the path is looked at, and a file whose
/// size and times are all the same counts as the same.
class FileWatch
{
public:
    explicit FileWatch(const QString &path);
    ~FileWatch();
    Q_DISABLE_COPY_MOVE(FileWatch)

    /// Whether the file differs from what it was when the watch began.
    bool hasChanged() const { return look() != m_stamp; }

private:
    class Look;

    FileStamp look() const;

    std::unique_ptr<const Look> m_look;
    FileStamp m_stamp;
};

} // namespace corvane

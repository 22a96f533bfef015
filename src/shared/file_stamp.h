#pragma once

#include <QtCore/QString>

namespace corvane {

/// Identity, size and change times of a file: two equal stamps mean the same unchanged file.
struct FileStamp {
    quint64 device = 0;
    quint64 inode = 0;
    qint64 size = -1; ///< -1: no such file
    qint64 changed = 0;
    qint64 modified = 0;

    bool exists() const { return size >= 0; }
    bool operator==(const FileStamp &) const = default;
};

/// One system call; cheap enough for once per record. `encodedPath` as QFile::encodeName gives it.
FileStamp fileStamp(const QByteArray &encodedPath);

} // namespace corvane

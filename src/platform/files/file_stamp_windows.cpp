#include "platform/files/file_stamp.h"

#include "platform/files/native_path.h"

#include <qt_windows.h>

namespace corvane {

namespace {

quint64 number(DWORD high, DWORD low)
{
    return quint64(high) << 32 | low;
}

/// In 100 nanoseconds since 1601, as the system counts.
qint64 number(const FILETIME &time)
{
    return qint64(number(time.dwHighDateTime, time.dwLowDateTime));
}

} // namespace

/// By a handle, which alone tells the file's identity.
FileStamp fileStamp(const QString &path)
{
    const HANDLE file = CreateFileW(nativePath(path).c_str(), FILE_READ_ATTRIBUTES,
        FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return {};
    BY_HANDLE_FILE_INFORMATION info {};
    const bool isKnown = GetFileInformationByHandle(file, &info);
    CloseHandle(file);
    if (!isKnown)
        return {};
    return {info.dwVolumeSerialNumber, number(info.nFileIndexHigh, info.nFileIndexLow), info.nNumberOfLinks,
        qint64(number(info.nFileSizeHigh, info.nFileSizeLow)), number(info.ftCreationTime), number(info.ftLastWriteTime)};
}

/// Deliberate: no handle is kept, though it would be the quicker look. An open file cannot be replaced on network
/// folders nor, by most editors, anywhere, whatever it is shared for.
class FileWatch::Look
{
public:
    explicit Look(const QString &path)
        : m_name(path)
        , m_path(nativePath(path))
    {
    }

    FileStamp stamp() const
    {
        WIN32_FILE_ATTRIBUTE_DATA data {};
        if (!GetFileAttributesExW(m_path.c_str(), GetFileExInfoStandard, &data))
            return {};
        if (data.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) // these are a link's own
            return fileStamp(m_name);
        return {0, 0, 1, qint64(number(data.nFileSizeHigh, data.nFileSizeLow)), number(data.ftCreationTime),
            number(data.ftLastWriteTime)};
    }

private:
    QString m_name;
    std::wstring m_path;
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

#include "platform/files/file_hold.h"

#include "platform/files/native_path.h"
#include "platform/files/temporary_name.h"

#include <QtCore/QFileInfo>

#include <qt_windows.h>

#include <io.h>

namespace corvane {

namespace {

/// A byte that no file reaches: others read and write what there is.
constexpr DWORD kFarBeyondTheEnd = 0x4000'0000; // the upper half of its place

/// The one name that a file has in its folder, whatever link or short name leads to it; empty where
/// there is none.
QString trueName(const QString &fileName)
{
    const HANDLE file = CreateFileW(nativePath(fileName).c_str(), FILE_READ_ATTRIBUTES,
        FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return {};
    std::wstring name(GetFinalPathNameByHandleW(file, nullptr, 0, 0), L'\0');
    name.resize(GetFinalPathNameByHandleW(file, name.data(), DWORD(name.size()), 0));
    CloseHandle(file);
    return QString::fromStdWString(name);
}

/// What is just being deleted counts.
bool isThere(const std::wstring &path)
{
    return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES
        || GetLastError() == ERROR_ACCESS_DENIED;
}

} // namespace

HoldResult holdOpenFile(int descriptor)
{
    return holdHandle(reinterpret_cast<HANDLE>(_get_osfhandle(descriptor)));
}

HoldResult holdHandle(void *handle)
{
    OVERLAPPED place{};
    place.OffsetHigh = kFarBeyondTheEnd;
    if (LockFileEx(handle, LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &place))
        return HoldResult::Held;
    const DWORD error = GetLastError();
    return error == ERROR_LOCK_VIOLATION || error == ERROR_IO_PENDING ? HoldResult::HeldByAnother
                                                                      : HoldResult::Unknown;
}

/// Deliberate: the file itself is not opened. On network folders and older file systems no file can
/// be replaced that anybody has open, its replacer included. What is held is a file beside it, which
/// the system deletes when it is closed, also by the death of its program.
HoldResult FileHold::attempt(const QString &fileName)
{
    const QFileInfo held(trueName(fileName));
    if (held.fileName().isEmpty())
        return HoldResult::Unknown;
    const std::wstring beside
        = nativePath(temporaryNameFor(held.path(), held.fileName().toCaseFolded()));
    const HANDLE file = CreateFileW(beside.c_str(), GENERIC_WRITE | DELETE, 0, nullptr, OPEN_ALWAYS,
        FILE_ATTRIBUTE_HIDDEN | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
    m_file = reinterpret_cast<qintptr>(file);
    if (file != INVALID_HANDLE_VALUE)
        return HoldResult::Held;
    const DWORD error = GetLastError();
    return error == ERROR_SHARING_VIOLATION || (error == ERROR_ACCESS_DENIED && isThere(beside))
        ? HoldResult::HeldByAnother
        : HoldResult::Unknown;
}

void FileHold::letGo()
{
    if (m_file != kNone)
        CloseHandle(reinterpret_cast<HANDLE>(m_file));
    m_file = kNone;
}

} // namespace corvane

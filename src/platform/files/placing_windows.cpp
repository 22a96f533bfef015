#include "platform/files/placing.h"

#include "platform/files/file_hold.h"
#include "platform/files/native_path.h"

#include <QtCore/QFileInfo>
#include <QtCore/QThread>

#include <cstring>
#include <memory>
#include <vector>

#include <qt_windows.h>

#include <fcntl.h>
#include <io.h>

namespace corvane {

namespace {

constexpr int kAttempts = 20;
constexpr unsigned long kPauseMs = 50;
constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr qsizetype kLongestName = 255;
constexpr DWORD kQuotaExceeded = 1295; // ERROR_DISK_QUOTA_EXCEEDED, which the headers lack

// Windows 10's, which the compiler's headers keep for programs that need it; [MS-FSCC] 2.4.43.
constexpr auto kRenameInfoEx = FILE_INFO_BY_HANDLE_CLASS(22);
constexpr DWORD kReplaceIfExists = 1;
constexpr DWORD kPosixSemantics = 2;

struct CloseFile
{
    using pointer = HANDLE;
    void operator()(HANDLE handle) const { CloseHandle(handle); }
};
using OpenFile = std::unique_ptr<HANDLE, CloseFile>;

/// Null when it cannot be opened: GetLastError() says why.
OpenFile openExisting(
    const QString &name, DWORD access, DWORD share = kShareAll, DWORD flags = 0)
{
    const HANDLE handle = CreateFileW(nativePath(name).c_str(), access, share, nullptr,
        OPEN_EXISTING, flags | FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
    return OpenFile(handle == INVALID_HANDLE_VALUE ? nullptr : handle);
}

HANDLE handleOf(QFile &file)
{
    return reinterpret_cast<HANDLE>(_get_osfhandle(file.handle()));
}

SystemFault faultOf(DWORD code, QFileDevice::FileError kind, const QString &name)
{
    // The system's words for it leave the reader to guess, where they are not about something else.
    if (QFileInfo(name).fileName().size() > kLongestName)
        return {kind, QStringLiteral("File name too long")};
    const bool isFull
        = code == ERROR_DISK_FULL || code == ERROR_HANDLE_DISK_FULL || code == kQuotaExceeded;
    return {isFull ? QFileDevice::ResourceError : kind, qt_error_string(int(code))};
}

/// A file's own rights, with those that it has from its folder; empty where there are none.
std::vector<char> rightsOf(const QString &name)
{
    const std::wstring path = nativePath(name);
    DWORD size = 0;
    GetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &size);
    std::vector<char> rights(size);
    if (!GetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, rights.data(), size, &size))
        rights.clear();
    return rights;
}

/// The name at once belongs to the new file, also while others have the old one open and share it
/// as this program does. File systems that know no such renaming take the older way.
DWORD rename(HANDLE file, const std::wstring &target)
{
    const size_t bytes = target.size() * sizeof(wchar_t);
    std::vector<char> buffer(sizeof(FILE_RENAME_INFO) + bytes);
    auto *info = reinterpret_cast<FILE_RENAME_INFO *>(buffer.data());
    info->FileNameLength = DWORD(bytes);
    std::memcpy(info->FileName, target.data(), bytes);
    const auto attempt = [&](FILE_INFO_BY_HANDLE_CLASS way) {
        return SetFileInformationByHandle(file, way, info, DWORD(buffer.size())) ? ERROR_SUCCESS
                                                                                 : GetLastError();
    };
    constexpr DWORD kFlags = kReplaceIfExists | kPosixSemantics;
    std::memcpy(buffer.data(), &kFlags, sizeof kFlags); // where the older way has its yes or no
    const DWORD result = attempt(kRenameInfoEx);
    if (result != ERROR_INVALID_PARAMETER && result != ERROR_NOT_SUPPORTED
        && result != ERROR_INVALID_FUNCTION && result != ERROR_CALL_NOT_IMPLEMENTED)
        return result;
    std::memset(buffer.data(), 0, sizeof kFlags);
    info->ReplaceIfExists = TRUE;
    return attempt(FileRenameInfo);
}

/// Virus scanners and indexers open a file for a moment whenever it changes.
bool maySoonBeFree(DWORD result, const QString &target)
{
    return (result == ERROR_ACCESS_DENIED || result == ERROR_SHARING_VIOLATION)
        && isOpenElsewhere(target, OpenUse::Any);
}

} // namespace

/// Open as no Qt device opens a file: it can be renamed as it is, and until then no moment comes in
/// which somebody who cleans up finds it neither held nor in its place.
SystemFault createFor(const QString &target, const QString &name, QFile &file)
{
    std::vector<char> rights = rightsOf(target);
    SECURITY_ATTRIBUTES attributes{sizeof attributes, rights.data(), FALSE};
    const HANDLE handle = CreateFileW(nativePath(name).c_str(),
        GENERIC_READ | GENERIC_WRITE, kShareAll, rights.empty() ? nullptr : &attributes,
        CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        const DWORD code = GetLastError();
        return faultOf(code,
            code == ERROR_ACCESS_DENIED ? QFileDevice::PermissionsError : QFileDevice::OpenError,
            name);
    }
    file.setFileName(name);
    const int descriptor = _open_osfhandle(reinterpret_cast<intptr_t>(handle), _O_BINARY);
    if (descriptor >= 0
        && file.open(descriptor, QIODevice::ReadWrite | QIODevice::Unbuffered,
            QFileDevice::AutoCloseHandle))
        return {};
    descriptor >= 0 ? void(_close(descriptor)) : void(CloseHandle(handle));
    DeleteFileW(nativePath(name).c_str());
    return {QFileDevice::OpenError, QStringLiteral("Too many files are open")};
}

/// It was made with them. The owner stays whoever saves: giving files away is an administrator's.
void takeOverRights(QFile &, const QString &) { }

SystemFault flushToDisk(QFile &file)
{
    if (FlushFileBuffers(handleOf(file)))
        return {};
    return faultOf(GetLastError(), QFileDevice::WriteError, file.fileName());
}

/// By a handle of its own, which makes the name, too, reach the disk before the call returns, and is
/// closed at once: as long as somebody may delete a file, most programs cannot open it.
SystemFault moveOnto(const QString &name, const QString &target)
{
    const OpenFile file = openExisting(name, DELETE, kShareAll, FILE_FLAG_WRITE_THROUGH);
    if (!file)
        return faultOf(GetLastError(), QFileDevice::RenameError, name);
    const std::wstring path = nativePath(target);
    DWORD result = rename(file.get(), path);
    for (int i = 0; i < kAttempts && maySoonBeFree(result, target); ++i) {
        QThread::msleep(kPauseMs);
        result = rename(file.get(), path);
    }
    return result == ERROR_SUCCESS ? SystemFault()
                                   : faultOf(result, QFileDevice::RenameError, target);
}

SystemFault keepUnder(const QString &second, const QString &name)
{
    const std::wstring from = nativePath(name);
    const std::wstring to = nativePath(second);
    if (CreateHardLinkW(to.c_str(), from.c_str(), nullptr)
        || CopyFileW(from.c_str(), to.c_str(), TRUE))
        return {};
    return faultOf(GetLastError(), QFileDevice::CopyError, name);
}

/// Whoever still writes a file holds it, or does not share its deletion; a program that was killed
/// has nothing open any more.
void removeIfAbandoned(const QString &name)
{
    const OpenFile file = openExisting(name, GENERIC_READ | DELETE);
    if (!file || holdHandle(file.get()) != HoldResult::Held)
        return;
    FILE_DISPOSITION_INFO deleted{TRUE};
    SetFileInformationByHandle(file.get(), FileDispositionInfo, &deleted, sizeof deleted);
}

bool isOpenElsewhere(const QString &name, OpenUse use)
{
    const OpenFile file = use == OpenUse::Any ? openExisting(name, GENERIC_READ, 0)
                                              : openExisting(name, DELETE);
    return !file && GetLastError() == ERROR_SHARING_VIOLATION;
}

} // namespace corvane

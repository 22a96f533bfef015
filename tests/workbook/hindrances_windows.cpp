#include "workbook/hindrances.h"

#include "platform/files/native_path.h"

#include <QtCore/QFile>

#include <qt_windows.h>

namespace corvane::test {

namespace {

std::function<void()> targetIsReadOnly(const QString &folder)
{
    const std::wstring name = nativePath(folder + u'/' + kUsual);
    SetFileAttributesW(name.c_str(), FILE_ATTRIBUTE_READONLY);
    return [name] { SetFileAttributesW(name.c_str(), FILE_ATTRIBUTE_NORMAL); };
}

/// As a spreadsheet program does that shows the old file.
std::function<void()> targetIsOpen(const QString &folder)
{
    const HANDLE file = CreateFileW(nativePath(folder + u'/' + kUsual).c_str(), GENERIC_READ,
        FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    return [file] { CloseHandle(file); };
}

} // namespace

/// Not here: a disk without room, which only an administrator can make, and a folder without rights,
/// which are none to the administrator that tests run as.
std::vector<HindranceRow> systemHindrances(qint64)
{
    return {
        {"the target is read-only", targetIsReadOnly, "You may not change this file."},
        {"the target is open elsewhere", targetIsOpen,
            "The file is open in another program. Close it there or choose another file name."},
    };
}

} // namespace corvane::test

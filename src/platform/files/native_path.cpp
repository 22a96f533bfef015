#include "platform/files/native_path.h"

#include <QtCore/QDir>

#include <qt_windows.h>

namespace corvane {

std::wstring nativePath(const QString &name)
{
    const std::wstring given = QDir::toNativeSeparators(name).toStdWString();
    std::wstring path(GetFullPathNameW(given.c_str(), 0, nullptr, nullptr), L'\0');
    path.resize(GetFullPathNameW(given.c_str(), DWORD(path.size()), path.data(), nullptr));
    if (path.starts_with(LR"(\\?\)") || path.starts_with(LR"(\\.\)"))
        return path;
    return path.starts_with(LR"(\\)") ? LR"(\\?\UNC)" + path.substr(1) : LR"(\\?\)" + path;
}

} // namespace corvane

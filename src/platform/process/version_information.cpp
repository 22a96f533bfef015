#include "platform/process/version_information.h"

#ifdef Q_OS_WIN
#include <qt_windows.h>

#include <vector>
#endif

namespace corvane {

#ifdef Q_OS_WIN

/// 040904b0 names the resource's language and its character set, American English in UTF-16.
QString versionComments()
{
    constexpr DWORD kLongestPath = 32'768;
    std::vector<wchar_t> path(kLongestPath);
    if (GetModuleFileNameW(nullptr, path.data(), kLongestPath) == 0)
        return {};
    std::vector<char> block(GetFileVersionInfoSizeW(path.data(), nullptr));
    if (block.empty() || !GetFileVersionInfoW(path.data(), 0, DWORD(block.size()), block.data()))
        return {};
    void *text = nullptr;
    UINT length = 0; // in characters, the closing NUL counted
    if (!VerQueryValueW(block.data(), L"\\StringFileInfo\\040904b0\\Comments", &text, &length) || length == 0)
        return {};
    return QString::fromWCharArray(static_cast<const wchar_t *>(text), qsizetype(length) - 1);
}

#else

QString versionComments()
{
    return {};
}

#endif

} // namespace corvane

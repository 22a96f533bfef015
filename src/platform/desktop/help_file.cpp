#include "platform/desktop/help_file.h"

#include <QtCore/QDir>
#include <QtWidgets/QWidget>
#ifdef Q_OS_WIN
#include <qt_windows.h>
#endif

namespace corvane {

#ifdef Q_OS_WIN

bool showCompiledHelp(QWidget *owner, const QString &path, int context)
{
    using HtmlHelp = HWND(WINAPI *)(HWND, const wchar_t *, UINT, DWORD_PTR);
    constexpr UINT kShowTopicByContext = 15;
    // Part of the system, but not of every edition of it: asked for only when somebody wants help, and nowhere but in
    // the system's own folder.
    static const HMODULE engine = LoadLibraryExW(L"hhctrl.ocx", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    static const auto htmlHelp
        = engine ? reinterpret_cast<HtmlHelp>(reinterpret_cast<void *>(GetProcAddress(engine, "HtmlHelpW"))) : nullptr;
    if (!htmlHelp)
        return false;
    const QString file = QDir::toNativeSeparators(path);
    const HWND window = owner ? reinterpret_cast<HWND>(owner->window()->winId()) : nullptr;
    return htmlHelp(window, reinterpret_cast<const wchar_t *>(file.utf16()), kShowTopicByContext, DWORD_PTR(context)) != nullptr;
}

#else

bool showCompiledHelp(QWidget *, const QString &, int)
{
    return false;
}

#endif

} // namespace corvane

#include "platform/process/screen.h"

#include <QtCore/QByteArrayView>
#include <QtCore/QtGlobal>

#include <algorithm>
#include <span>

namespace corvane {

#ifdef Q_OS_LINUX

bool hasScreen(int argc, char **argv)
{
    const std::span arguments(argv, size_t(argc));
    return !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")
        || !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")
        || std::ranges::any_of(
            arguments, [](const char *argument) { return QByteArrayView(argument).endsWith("-platform"); });
}

#else

bool hasScreen(int, char **)
{
    return true;
}

#endif

} // namespace corvane

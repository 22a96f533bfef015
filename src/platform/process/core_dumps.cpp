#include "platform/process/core_dumps.h"

#include <QtCore/QtGlobal>

#ifdef Q_OS_WIN
#include <qt_windows.h>
#else
#include <sys/resource.h>
#endif

namespace corvane {

void switchCoreDumpsOff()
{
#ifdef Q_OS_WIN
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX | SEM_NOOPENFILEERRORBOX);
#else
    const rlimit none {0, 0};
    setrlimit(RLIMIT_CORE, &none);
#endif
}

} // namespace corvane

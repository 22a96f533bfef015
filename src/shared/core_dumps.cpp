#include "shared/core_dumps.h"

#include <QtCore/QtGlobal>

#ifndef Q_OS_WIN
#include <sys/resource.h>
#endif

namespace corvane {

void switchCoreDumpsOff()
{
#ifndef Q_OS_WIN
    const rlimit none {0, 0};
    setrlimit(RLIMIT_CORE, &none);
#endif
}

} // namespace corvane

#include "platform/process/process_memory.h"

#include <qt_windows.h>

#include <psapi.h>

namespace corvane {

namespace {

PROCESS_MEMORY_COUNTERS counters()
{
    PROCESS_MEMORY_COUNTERS counters {};
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return counters;
}

} // namespace

qint64 residentMemoryKiB()
{
    return qint64(counters().WorkingSetSize / 1024);
}

qint64 peakMemoryKiB()
{
    return qint64(counters().PeakWorkingSetSize / 1024);
}

bool restartPeakMemory()
{
    return false;
}

} // namespace corvane

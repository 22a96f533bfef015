#include "process_memory.h"

#include "platform/process/process_memory.h"

namespace corvane::bench {

MemoryRise::MemoryRise()
{
    restartPeakMemory();
    m_beforeKiB = residentMemoryKiB();
}

double MemoryRise::miB() const
{
    return double(peakMemoryKiB() - m_beforeKiB) / 1024;
}

} // namespace corvane::bench

#include "platform/process/process_memory.h"

#include <QtCore/QFile>

namespace corvane {

namespace {

/// A line of the process's status ([man 5 proc_pid_status]): "VmHWM:     1234 kB".
qint64 statusKiB(QByteArrayView name)
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith(name))
            return line.sliced(name.size()).simplified().split(' ').value(0).toLongLong();
    }
    return 0;
}

} // namespace

qint64 residentMemoryKiB()
{
    return statusKiB("VmRSS:");
}

qint64 peakMemoryKiB()
{
    return statusKiB("VmHWM:");
}

bool restartPeakMemory()
{
    QFile reset(QStringLiteral("/proc/self/clear_refs"));
    return reset.open(QIODevice::WriteOnly | QIODevice::Unbuffered) && reset.write("5") == 1;
}

} // namespace corvane

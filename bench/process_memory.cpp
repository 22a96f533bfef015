#include "process_memory.h"

#include <QtCore/QFile>

namespace corvane::bench {

double statusMiB(const char *name)
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith(name))
            return line.mid(int(qstrlen(name))).simplified().split(' ').value(0).toDouble() / 1024;
    }
    return 0;
}

void resetPeak()
{
    QFile reset(QStringLiteral("/proc/self/clear_refs"));
    if (reset.open(QIODevice::WriteOnly))
        reset.write("5");
}

} // namespace corvane::bench

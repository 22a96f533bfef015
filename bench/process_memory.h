#pragma once

#include <QtCore/QtGlobal>

namespace corvane::bench {

/// How far the resident memory rises above what it is when this is made. Where the system cannot let its
/// peak start again an earlier, higher one counts: the rise is at most what it says.
class MemoryRise
{
public:
    MemoryRise();
    double miB() const;

private:
    qint64 m_beforeKiB;
};

} // namespace corvane::bench

#pragma once

#include <QtCore/QtGlobal>

namespace corvane {

// How much memory this process has resident, in KiB; 0 where the system does not tell.
qint64 residentMemoryKiB();
qint64 peakMemoryKiB();

/// Lets the peak start again from what is resident now. False: the system cannot, and the peak stays the
/// one since the program began.
bool restartPeakMemory();

} // namespace corvane

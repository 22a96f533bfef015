#pragma once

namespace corvane::bench {

/// A line of the process's own status in MiB, as "VmHWM:"; 0 where the system does not tell.
double statusMiB(const char *name);
/// Lets the highest resident size start again from the present one.
void resetPeak();

} // namespace corvane::bench

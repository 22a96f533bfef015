#pragma once

namespace corvane {

/// Keeps the process from leaving its memory on the disk when it crashes: passwords and patients stand in
/// it. On Windows a crash ends it at once, without the system's box and the report that it would make and
/// send; no missing disk is asked for in a box that nobody sees.
void switchCoreDumpsOff();

} // namespace corvane

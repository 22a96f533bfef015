#pragma once

namespace corvane {

/// Keeps the process from leaving its memory on the disk when it crashes: passwords and patients stand in
/// it. No effect on Windows, where the system keeps no such file unless an administrator asks for it.
void switchCoreDumpsOff();

} // namespace corvane

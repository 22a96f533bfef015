#pragma once

namespace corvane {

/// Whether there is a screen for windows, or the program was told of another platform, by the environment or by its
/// arguments. True where the system always has one.
bool hasScreen(int argc, char **argv);

} // namespace corvane

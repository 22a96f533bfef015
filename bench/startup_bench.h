#pragma once

namespace corvane::bench {

/// From the start of the process to the painted logon form, the same for an empty window and for
/// one that shows a word, each with a folder of its own for what a user keeps. False when one of
/// them did not come up.
bool measureStartup(int rounds);

} // namespace corvane::bench

#pragma once

namespace corvane::bench {

/// Times a designed report of so many rows, one group and two aggregates, from its query to the
/// PDF, and prints it as a ratio to the limit program of the same run. False when its file cannot
/// be written.
bool measureDesigned(int rows, int rounds);

} // namespace corvane::bench

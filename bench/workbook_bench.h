#pragma once

namespace corvane::bench {

/// Writes rows of seven short cells from memory as a workbook and prints the time as a ratio to the
/// limit program of the same run, best of `rounds`, for 10,000, 100,000 and (up to `most`)
/// 1,000,000 rows; and how far the memory rose above the rows, with values that repeat and with
/// texts that are all different.
void measureWorkbooks(int most, int rounds);

} // namespace corvane::bench

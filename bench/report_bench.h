#pragma once

namespace corvane::bench {

/// Runs the batch program on 10,000, 100,000 and 1,000,000 rows, as far as `most`, and prints each
/// stage as a ratio to the limit program of the same run, best of `rounds`. False when a run
/// failed.
bool measureReports(int most, int rounds);

} // namespace corvane::bench

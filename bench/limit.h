#pragma once

#include <string>

namespace corvane::bench {

/// The fastest plain way to a report on paper, which the budgets are measured against: `rows` rows of
/// seven short cells out of memory as one PDF, 56 rows a Letter page, a text operator with its own
/// position for every cell, Helvetica not embedded, zlib level 6, objects written by hand.
/// @return milliseconds from the first row to the closed file
/// @throws std::runtime_error when the file cannot be written
double runLimit(const std::string &fileName, int rows);

} // namespace corvane::bench

#pragma once

namespace corvane::bench {

/// Fills the patient and the selection list with `rows` rows and prints each time as a ratio to stepping
/// through the same query with the embedded library alone, and the memory that the list took.
bool measureLists(int rows, int rounds);

} // namespace corvane::bench

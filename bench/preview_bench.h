#pragma once

namespace corvane::bench {

/// Searches a composed report of so many pages and prints each time as a ratio to the library's search
/// through the same text as one block; then prints what opening it, and jumping in it, cost beside painting
/// a report of one page. All in one run, the best of the rounds.
bool measurePreview(int pages, int rounds);

} // namespace corvane::bench

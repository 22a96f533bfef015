#pragma once

namespace corvane::bench {

enum class Extent { Quick, Full };
enum class TableForm { Plain, Markdown };

/// Holds what was recorded against budget.json and prints a row for each of its rows. A miss and a
/// figure that is lacking are named on standard error. @return whether there was neither.
bool checkBudgets(Extent extent, TableForm form);

} // namespace corvane::bench

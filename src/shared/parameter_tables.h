#pragma once

#include <QtCore/QString>

#include <array>
#include <vector>

namespace corvane {

/// Pairs of token and date text for sub-reports: column 0 the token, column 1 the date as it was
/// shown. Deliberate: row 2 and column 2 stay empty; those who walk the table count on three rows.
using DateParamTable = std::array<std::array<QString, 3>, 3>;

/// Rows of a marker, its replacement and an empty text.
using SelectionTable = std::vector<std::array<QString, 3>>;

} // namespace corvane

#pragma once

#include "platform/database/embedded/moment.h"
#include "platform/database/value.h"

namespace corvane::embedded {

/// The text of a date, date-time or time in a style of the server's CONVERT (0 to 14, 20 to 25, 100
/// to 114, 120, 121, 126, 127); without a style the kind's own default. Empty for an unknown style.
/// `fraction` is how many digits the seconds have behind the point; -1: the three of "datetime".
std::optional<QByteArray> styledText(
    Moment moment, ValueKind kind, std::optional<int> style, int fraction);

/// The order in which a style reads a date; `fallback` for a style without one.
DateOrder orderOfStyle(int style, DateOrder fallback);

} // namespace corvane::embedded

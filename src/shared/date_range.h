#pragma once

#include "shared/report_host.h"

namespace corvane {

/// What a run says about dates that do not fit, in the range dialog's words.
inline constexpr auto kDateOrderMessage = QLatin1StringView("Start Date must be earlier than End Date.");

/// Whether From does not lie after To; equal dates are in order.
constexpr bool isInOrder(qint64 fromDay, qint64 toDay) { return fromDay <= toDay; }

/// Whether a report can run with these dates: both whole, and in order when it asks for a range.
bool datesFit(const DateEntry &from, const DateEntry &to, bool asksForRange);

} // namespace corvane

#pragma once

#include "platform/dates/date_text.h"

#include <optional>

namespace corvane {

/// The short-date order that the computer is set to, for all its users; nothing where a system knows only the user's.
std::optional<DateOrder> computerDateOrder();

} // namespace corvane

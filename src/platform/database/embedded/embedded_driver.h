#pragma once

#include "platform/database/driver.h"

#include <functional>

namespace corvane::embedded {

/// Gives the moment of GETDATE; asked once per query.
using Clock = std::function<QDateTime()>;

/// As corvane::openEmbedded, with a clock of the caller's.
std::unique_ptr<Driver> open(
    const ConnectionText &text, const DriverSettings &settings, Clock clock);

} // namespace corvane::embedded

#pragma once

#include "platform/engine/expression/datum.h"

#include <QtCore/QString>

namespace corvane {

/// The value as it stands in a query: texts quoted with their quotes doubled, numbers plain, dates
/// as '20260131' and '2026-01-31T09:30:00', Booleans as 1 and 0, null as NULL, bytes as 0x….
QString sqlLiteral(const Datum &value);

} // namespace corvane

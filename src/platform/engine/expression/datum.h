#pragma once

#include "platform/database/value.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

namespace corvane {

/// A computed value that owns its text. Whole numbers and decimals are exact, up to 38 digits; a result
/// that leaves them becomes a real.
class Datum;

} // namespace corvane

#pragma once

#include <QtCore/QString>

namespace corvane {

/// Minutes after midnight as a clock text: 545 is "9:05 AM", 720 "12:00 Noon", 0 and 1440 "12:00 Mid".
QString MinToTime(qint16 minutes);

/// An appointment's colour code as its status word; empty for a code that is none.
QLatin1StringView ColorToStatus(qint32 code);

} // namespace corvane

#pragma once

#include "platform/database/value.h"

#include <QtCore/QDateTime>
#include <QtCore/QLocale>

namespace corvane {

enum LocaleItem { ShortDateFormat = 31, ShortDateOrder = 33, TimeFormat = 4099 };

/// One item of a locale as text; empty for an item that is not known. The C and POSIX locales count
/// as month-day-year.
QString getLocaleValue(const QLocale &locale, int item);

/// 0 month-day-year, 1 day-month-year, 2 year-month-day.
qint16 getDateOrder(const QLocale &locale);

/// "yyyy/mm/dd" whatever the system's settings.
QString fmtDate(QDate date);

/// Dates and times of report cells: the short form with a four-digit year.
ValueTextStyle cellStyle(const QLocale &locale);

/// "Now" as page headers show it: short date with a four-digit year and short time.
QString dateTimeText(const QDateTime &moment, const QLocale &locale);

} // namespace corvane

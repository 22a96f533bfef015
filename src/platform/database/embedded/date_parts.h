#pragma once

#include "platform/database/embedded/moment.h"

#include <QtCore/QString>

namespace corvane::embedded {

enum class DatePart {
    Year,
    Quarter,
    Month,
    DayOfYear,
    Day,
    Week,
    Weekday,
    IsoWeek,
    Hour,
    Minute,
    Second,
    Millisecond
};

/// The part that a word such as "month", "mm" or "m" names.
std::optional<DatePart> datePartNamed(QStringView word);
constexpr bool isPartOfDay(DatePart part)
{
    return part >= DatePart::Hour;
}

/// Months and years keep the day, or take the month's last one. Empty beyond the years 1 to 9999.
std::optional<Moment> addParts(Moment moment, DatePart part, qint64 count);

/// How many boundaries of the part lie between the two; weeks begin on Sunday.
qint64 partsBetween(Moment from, Moment to, DatePart part);

/// Sunday is weekday 1, week 1 holds the first day of January.
int partOf(Moment moment, DatePart part);

/// As partOf, with the English names of months and weekdays.
QByteArray partName(Moment moment, DatePart part);
const char *monthName(int month);

} // namespace corvane::embedded

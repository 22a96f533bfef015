#pragma once

#include <QtCore/QDate>
#include <QtCore/QString>

#include <optional>

namespace corvane {

/// The order of the parts in the system's short dates, by its classic number.
enum class DateOrder { MonthDayYear = 0, DayMonthYear = 1, YearMonthDay = 2 };

/// The order of a number; any other number counts as month-day-year.
DateOrder dateOrderOf(int number);

/// "11/01/2026", or "2026/11/01" with the year first. Empty for an invalid date.
QString dateText(QDate date, DateOrder order);

/// Reads a whole date with any separators ("11/1/2026", "1. 11. 2026") or as eight digits. Four digits in
/// front are always a year; a year of two digits lies between 1930 and 2029. Empty: not a date.
std::optional<QDate> readDate(QStringView text, DateOrder order);

/// Days since 1899-12-30, so that 1899-12-31 is 1 and 1900-01-01 is 2. 0 for an invalid date.
int dayNumber(QDate date);

} // namespace corvane

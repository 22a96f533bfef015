#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <optional>

namespace corvane::embedded {

constexpr qint64 kMsPerDay = 86'400'000;

/// The order of day, month and year in a date text.
enum class DateOrder { MonthDayYear, DayMonthYear, YearMonthDay };

/// A point on the calendar of the years 1 to 9999, without a time zone.
struct Moment
{
    qint64 ms = 0; ///< since the start of 1970

    qint64 day() const; ///< since the start of 1970
    qint64 timeOfDay() const { return ms - day() * kMsPerDay; }
};

struct CivilDate
{
    int year = 1900;
    int month = 1;
    int day = 1;
};

CivilDate civilDate(qint64 epochDay);
/// Empty when the calendar has no such day or the year is not 1 to 9999.
std::optional<qint64> epochDay(const CivilDate &date);
int daysInMonth(int year, int month);

/// Day 0 of the server's numbers for dates.
constexpr qint64 kServerDayZero = -25'567; // 1900-01-01

/// The stored forms: "YYYY-MM-DD", "YYYY-MM-DD HH:MM:SS" with or without ".f" to ".fffffff", the
/// blank also as "T". Empty for anything else; this is the fast way for the cells of a column.
std::optional<qint64> storedDate(QByteArrayView text);
std::optional<Moment> storedMoment(QByteArrayView text);
/// "HH:MM", "HH:MM:SS" with or without a fraction: milliseconds after midnight.
std::optional<qint64> storedTime(QByteArrayView text);

/// A date as people write it: numbers parted by "/", "-" or "." in the given order (four digits
/// first are the year in any order), eight digits, or a month's English name; with or without a
/// time of day. The empty text is the first day of 1900, a time alone is on that day.
std::optional<Moment> writtenMoment(QByteArrayView text, DateOrder order);

/// Whether a text is so clearly a date that it can be taken for one without knowing the column.
bool looksLikeDate(QByteArrayView text);

/// Writes the last `digits` digits of a number, zeros in front; returns the end.
char *putDigits(char *out, int number, int digits);

QByteArray dateText(qint64 epochDay); ///< "YYYY-MM-DD"
QByteArray momentText(Moment moment); ///< the time only when it is not midnight
QByteArray timeText(qint64 timeOfDay); ///< "HH:MM:SS" or "HH:MM:SS.fff"

} // namespace corvane::embedded

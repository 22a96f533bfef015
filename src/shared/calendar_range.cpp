#include "shared/calendar_range.h"

namespace corvane {

namespace {

constexpr int kDaysOfWeek = 7;
constexpr int kMonthsOfQuarter = 3;
constexpr int kMonthsOfYear = 12;

DaySpan weekOf(QDate day, Qt::DayOfWeek weekStart)
{
    const int into = (day.dayOfWeek() - int(weekStart) + kDaysOfWeek) % kDaysOfWeek;
    const QDate first = day.addDays(-into);
    return {first, first.addDays(kDaysOfWeek - 1)};
}

/// The months that hold the day, the year divided into periods of so many; moved by whole periods.
DaySpan monthsAround(QDate day, int length, int periods)
{
    const int firstMonth = (day.month() - 1) / length * length + 1;
    const QDate first = QDate(day.year(), firstMonth, 1).addMonths(periods * length);
    return {first, first.addMonths(length).addDays(-1)};
}

} // namespace

DaySpan calendarRange(CalendarRange range, QDate today, Qt::DayOfWeek weekStart)
{
    switch (range) {
    case CalendarRange::Today:
        return {today, today};
    case CalendarRange::Yesterday:
        return {today.addDays(-1), today.addDays(-1)};
    case CalendarRange::ThisWeek:
        return weekOf(today, weekStart);
    case CalendarRange::LastWeek:
        return weekOf(today.addDays(-kDaysOfWeek), weekStart);
    case CalendarRange::ThisMonth:
        return monthsAround(today, 1, 0);
    case CalendarRange::LastMonth:
        return monthsAround(today, 1, -1);
    case CalendarRange::ThisQuarter:
        return monthsAround(today, kMonthsOfQuarter, 0);
    case CalendarRange::LastQuarter:
        return monthsAround(today, kMonthsOfQuarter, -1);
    case CalendarRange::ThisYear:
        return monthsAround(today, kMonthsOfYear, 0);
    case CalendarRange::LastYear:
        return monthsAround(today, kMonthsOfYear, -1);
    }
    return {today, today};
}

} // namespace corvane

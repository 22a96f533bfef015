#pragma once

#include <QtCore/QDate>

#include <array>

namespace corvane {

/// Whole calendar periods around a day.
enum class CalendarRange {
    Today,
    Yesterday,
    ThisWeek,
    LastWeek,
    ThisMonth,
    LastMonth,
    ThisQuarter,
    LastQuarter,
    ThisYear,
    LastYear,
};

inline constexpr std::array kCalendarRanges{CalendarRange::Today, CalendarRange::Yesterday,
    CalendarRange::ThisWeek, CalendarRange::LastWeek, CalendarRange::ThisMonth,
    CalendarRange::LastMonth, CalendarRange::ThisQuarter, CalendarRange::LastQuarter,
    CalendarRange::ThisYear, CalendarRange::LastYear};

/// A period's first and last day, both in it.
struct DaySpan
{
    QDate first;
    QDate last;
    bool operator==(const DaySpan &) const = default;
};

/// The days of a period as seen from a valid day. "This" periods run to their end, beyond today;
/// quarters begin with January, April, July and October.
DaySpan calendarRange(CalendarRange range, QDate today, Qt::DayOfWeek weekStart);

} // namespace corvane

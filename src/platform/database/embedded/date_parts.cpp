#include "platform/database/embedded/date_parts.h"

#include <algorithm>
#include <array>

namespace corvane::embedded {

namespace {

struct PartWord
{
    QLatin1StringView word;
    DatePart part;
};

constexpr std::array kPartWords{
    PartWord{QLatin1StringView("year"), DatePart::Year},
    PartWord{QLatin1StringView("yyyy"), DatePart::Year},
    PartWord{QLatin1StringView("yy"), DatePart::Year},
    PartWord{QLatin1StringView("quarter"), DatePart::Quarter},
    PartWord{QLatin1StringView("qq"), DatePart::Quarter},
    PartWord{QLatin1StringView("q"), DatePart::Quarter},
    PartWord{QLatin1StringView("month"), DatePart::Month},
    PartWord{QLatin1StringView("mm"), DatePart::Month},
    PartWord{QLatin1StringView("m"), DatePart::Month},
    PartWord{QLatin1StringView("dayofyear"), DatePart::DayOfYear},
    PartWord{QLatin1StringView("dy"), DatePart::DayOfYear},
    PartWord{QLatin1StringView("y"), DatePart::DayOfYear},
    PartWord{QLatin1StringView("day"), DatePart::Day},
    PartWord{QLatin1StringView("dd"), DatePart::Day},
    PartWord{QLatin1StringView("d"), DatePart::Day},
    PartWord{QLatin1StringView("week"), DatePart::Week},
    PartWord{QLatin1StringView("wk"), DatePart::Week},
    PartWord{QLatin1StringView("ww"), DatePart::Week},
    PartWord{QLatin1StringView("weekday"), DatePart::Weekday},
    PartWord{QLatin1StringView("dw"), DatePart::Weekday},
    PartWord{QLatin1StringView("w"), DatePart::Weekday},
    PartWord{QLatin1StringView("iso_week"), DatePart::IsoWeek},
    PartWord{QLatin1StringView("isowk"), DatePart::IsoWeek},
    PartWord{QLatin1StringView("isoww"), DatePart::IsoWeek},
    PartWord{QLatin1StringView("hour"), DatePart::Hour},
    PartWord{QLatin1StringView("hh"), DatePart::Hour},
    PartWord{QLatin1StringView("minute"), DatePart::Minute},
    PartWord{QLatin1StringView("mi"), DatePart::Minute},
    PartWord{QLatin1StringView("n"), DatePart::Minute},
    PartWord{QLatin1StringView("second"), DatePart::Second},
    PartWord{QLatin1StringView("ss"), DatePart::Second},
    PartWord{QLatin1StringView("s"), DatePart::Second},
    PartWord{QLatin1StringView("millisecond"), DatePart::Millisecond},
    PartWord{QLatin1StringView("ms"), DatePart::Millisecond},
};

constexpr std::array kMonthNames{"January", "February", "March", "April", "May", "June", "July",
    "August", "September", "October", "November", "December"};
constexpr std::array kDayNames{
    "Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday"};

qint64 floorDiv(qint64 value, qint64 divisor)
{
    return value / divisor - (value % divisor < 0 ? 1 : 0);
}

/// 0 is Sunday; the first day of 1970 was a Thursday.
int weekdayOf(qint64 day)
{
    return int((day % 7 + 11) % 7);
}

qint64 monthIndex(const CivilDate &date)
{
    return date.year * 12LL + date.month - 1;
}

qint64 msPer(DatePart part)
{
    switch (part) {
    case DatePart::Week:
        return 7 * kMsPerDay;
    case DatePart::Hour:
        return 3'600'000;
    case DatePart::Minute:
        return 60'000;
    case DatePart::Second:
        return 1000;
    case DatePart::Millisecond:
        return 1;
    default:
        return kMsPerDay;
    }
}

int monthsPer(DatePart part)
{
    return part == DatePart::Year   ? 12
        : part == DatePart::Quarter ? 3
        : part == DatePart::Month   ? 1
                                    : 0;
}

qint64 newYear(int year)
{
    return *epochDay({year, 1, 1});
}

int isoWeek(qint64 day)
{
    const qint64 thursday = day + 3 - (weekdayOf(day) + 6) % 7;
    return int((thursday - newYear(civilDate(thursday).year)) / 7) + 1;
}

} // namespace

std::optional<DatePart> datePartNamed(QStringView word)
{
    const auto known = std::ranges::find_if(kPartWords,
        [&](const PartWord &p) { return word.compare(p.word, Qt::CaseInsensitive) == 0; });
    return known == kPartWords.end() ? std::nullopt : std::optional(known->part);
}

std::optional<Moment> addParts(Moment moment, DatePart part, qint64 count)
{
    constexpr qint64 kFarthest = 10'000LL * 366 * kMsPerDay;
    const int months = monthsPer(part);
    if (months == 0) {
        qint64 ms = 0;
        if (__builtin_mul_overflow(count, msPer(part), &ms) || ms > kFarthest || ms < -kFarthest)
            return std::nullopt;
        const Moment sum{moment.ms + ms};
        return sum.day() < newYear(1) || sum.day() > newYear(9999) + 364 ? std::nullopt
                                                                         : std::optional(sum);
    }
    if (count > 120'000 || count < -120'000)
        return std::nullopt;
    CivilDate date = civilDate(moment.day());
    const qint64 index = monthIndex(date) + count * months;
    date.year = int(floorDiv(index, 12));
    date.month = int(index - date.year * 12LL) + 1;
    if (date.year < 1 || date.year > 9999)
        return std::nullopt;
    date.day = std::min(date.day, daysInMonth(date.year, date.month));
    return Moment{*epochDay(date) * kMsPerDay + moment.timeOfDay()};
}

qint64 partsBetween(Moment from, Moment to, DatePart part)
{
    if (const int months = monthsPer(part))
        return floorDiv(monthIndex(civilDate(to.day())), months)
            - floorDiv(monthIndex(civilDate(from.day())), months);
    if (part == DatePart::Week || part == DatePart::IsoWeek)
        return floorDiv(to.day() + 4, 7) - floorDiv(from.day() + 4, 7);
    return floorDiv(to.ms, msPer(part)) - floorDiv(from.ms, msPer(part));
}

int partOf(Moment moment, DatePart part)
{
    const CivilDate date = civilDate(moment.day());
    const int ms = int(moment.timeOfDay());
    const int dayOfYear = int(moment.day() - newYear(date.year)) + 1;
    switch (part) {
    case DatePart::Year:
        return date.year;
    case DatePart::Quarter:
        return (date.month + 2) / 3;
    case DatePart::Month:
        return date.month;
    case DatePart::DayOfYear:
        return dayOfYear;
    case DatePart::Day:
        return date.day;
    case DatePart::Week:
        return (dayOfYear - 1 + weekdayOf(newYear(date.year))) / 7 + 1;
    case DatePart::Weekday:
        return weekdayOf(moment.day()) + 1;
    case DatePart::IsoWeek:
        return isoWeek(moment.day());
    case DatePart::Hour:
        return ms / 3'600'000;
    case DatePart::Minute:
        return ms / 60'000 % 60;
    case DatePart::Second:
        return ms / 1000 % 60;
    case DatePart::Millisecond:
        return ms % 1000;
    }
    return 0;
}

QByteArray partName(Moment moment, DatePart part)
{
    if (part == DatePart::Month)
        return monthName(partOf(moment, part));
    if (part == DatePart::Weekday)
        return kDayNames[size_t(partOf(moment, part) - 1)];
    return QByteArray::number(partOf(moment, part));
}

const char *monthName(int month)
{
    return kMonthNames[size_t(month - 1)];
}

} // namespace corvane::embedded

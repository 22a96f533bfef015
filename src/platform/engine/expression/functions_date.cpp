#include "platform/engine/expression/functions.h"

#include "platform/engine/expression/nearest_name.h"
#include "platform/engine/expression/operators.h"

#include <cmath>

namespace corvane {

namespace {

enum class DateUnit : quint8 { Year, Quarter, Month, Week, Day, Hour, Minute, Second };

struct UnitName
{
    QStringView name;
    DateUnit unit;
};

constexpr std::array kUnits{UnitName{u"year", DateUnit::Year},
    UnitName{u"quarter", DateUnit::Quarter}, UnitName{u"month", DateUnit::Month},
    UnitName{u"week", DateUnit::Week}, UnitName{u"day", DateUnit::Day},
    UnitName{u"hour", DateUnit::Hour}, UnitName{u"minute", DateUnit::Minute},
    UnitName{u"second", DateUnit::Second}};

DateUnit unitOf(const Arguments &arguments)
{
    const QString text = arguments.text(0);
    QStringList names;
    for (const UnitName &known : kUnits) {
        if (text.compare(known.name, Qt::CaseInsensitive) == 0)
            return known.unit;
        names += known.name.toString();
    }
    arguments.refuse(QStringLiteral("a unit such as 'day' as its first argument, not \"%1\"%2")
                         .arg(text.left(40), didYouMean(text, names)));
}

qint64 milliseconds(DateUnit unit)
{
    return unit == DateUnit::Hour ? 3'600'000 : unit == DateUnit::Minute ? 60'000 : 1000;
}

Datum makeDate(const Arguments &arguments)
{
    const int year = arguments.whole(0);
    const QDate date(year, arguments.whole(1), arguments.whole(2));
    if (!date.isValid() || year < 1 || year > 9999)
        arguments.refuse(QStringLiteral("a day that exists, not year %1, month %2, day %3")
                             .arg(QString::number(year), arguments.text(1), arguments.text(2)));
    return Datum::date(date);
}

/// Minutes and seconds may go beyond 59, as long as the time stays within the day.
Datum makeTime(const Arguments &arguments)
{
    const qint64 seconds = arguments.whole(0) * qint64(3600) + arguments.whole(1) * qint64(60)
        + (arguments.has(2) ? arguments.whole(2) : 0);
    if (seconds < 0 || seconds >= 86'400)
        arguments.refuse(QStringLiteral("a time within the day"));
    return Datum::time(QTime::fromMSecsSinceStartOfDay(int(seconds * 1000)));
}

Datum year(const Arguments &arguments)
{
    return Datum::number(arguments.date(0).date().year());
}

Datum month(const Arguments &arguments)
{
    return Datum::number(arguments.date(0).date().month());
}

Datum day(const Arguments &arguments)
{
    return Datum::number(arguments.date(0).date().day());
}

/// 1 is Sunday, 7 is Saturday.
Datum weekday(const Arguments &arguments)
{
    return Datum::number(arguments.date(0).date().dayOfWeek() % 7 + 1);
}

QTime timeOf(const Arguments &arguments)
{
    if (!arguments.at(0).isDate() && arguments.at(0).kind() != DatumKind::Time)
        arguments.refuse(
            QStringLiteral("a time as its first argument, not %1").arg(describe(arguments.at(0))));
    return arguments.at(0).time();
}

Datum hour(const Arguments &arguments)
{
    return Datum::number(timeOf(arguments).hour());
}

Datum minute(const Arguments &arguments)
{
    return Datum::number(timeOf(arguments).minute());
}

Datum second(const Arguments &arguments)
{
    return Datum::number(timeOf(arguments).second());
}

QDateTime moved(const QDateTime &moment, DateUnit unit, int count)
{
    switch (unit) {
    case DateUnit::Year:
        return moment.addYears(count);
    case DateUnit::Quarter:
        return moment.addMonths(count * 3);
    case DateUnit::Month:
        return moment.addMonths(count);
    case DateUnit::Week:
        return moment.addDays(count * qint64(7));
    case DateUnit::Day:
        return moment.addDays(count);
    default:
        return moment.addMSecs(count * milliseconds(unit));
    }
}

/// A month's last day stays within the month that it gets to: January 31 and a month is February 28
/// or 29.
Datum dateAdd(const Arguments &arguments)
{
    constexpr int kFurthest = 5'000'000; // days of more than 9999 years
    const DateUnit unit = unitOf(arguments);
    const int count = arguments.whole(1);
    if (unit < DateUnit::Hour && std::abs(qint64(count)) > kFurthest)
        arguments.refuse(
            QStringLiteral("a smaller number as its second argument, not %1").arg(count));
    const Datum &date = arguments.date(2);
    return dateWithin(moved(date.dateTime(), unit, count),
        unit < DateUnit::Hour && date.kind() == DatumKind::Date);
}

/// The number of the unit that a moment lies in, counted from some fixed moment.
qint64 unitNumber(const QDateTime &moment, DateUnit unit)
{
    const QDate date = moment.date();
    switch (unit) {
    case DateUnit::Year:
        return date.year();
    case DateUnit::Quarter:
        return date.year() * 4 + (date.month() - 1) / 3;
    case DateUnit::Month:
        return date.year() * 12 + date.month();
    case DateUnit::Week:
        return (date.toJulianDay() + 1) / 7; // weeks start on Sunday; day 0 is a Monday
    case DateUnit::Day:
        return date.toJulianDay();
    default:
        return QDateTime(QDate(1, 1, 1), QTime(0, 0), Qt::UTC).msecsTo(moment) / milliseconds(unit);
    }
}

/// How many ends of the unit lie between the dates, as the server's DATEDIFF counts.
Datum dateDiff(const Arguments &arguments)
{
    const DateUnit unit = unitOf(arguments);
    return Datum::number(unitNumber(arguments.date(2).dateTime(), unit)
        - unitNumber(arguments.date(1).dateTime(), unit));
}

/// Whole years; who is born on February 29 turns a year older on March 1.
Datum age(const Arguments &arguments)
{
    const QDate born = arguments.date(0).date();
    const QDate on = arguments.date(1).date();
    const bool isBeforeBirthday
        = on.month() < born.month() || (on.month() == born.month() && on.day() < born.day());
    return Datum::number(on.year() - born.year() - (isBeforeBirthday ? 1 : 0));
}

Datum now(const Arguments &arguments)
{
    return arguments.context().variable(ReportVariable::PrintTime);
}

Datum today(const Arguments &arguments)
{
    const Datum moment = now(arguments);
    return moment.isDate() ? Datum::date(moment.date()) : Datum();
}

constexpr std::array kFunctions{
    Function{u"Date", 3, 3, makeDate},
    Function{u"Time", 2, 3, makeTime},
    Function{u"Year", 1, 1, year},
    Function{u"Month", 1, 1, month},
    Function{u"Day", 1, 1, day},
    Function{u"Weekday", 1, 1, weekday},
    Function{u"Hour", 1, 1, hour},
    Function{u"Minute", 1, 1, minute},
    Function{u"Second", 1, 1, second},
    Function{u"DateAdd", 3, 3, dateAdd},
    Function{u"DateDiff", 3, 3, dateDiff},
    Function{u"Age", 2, 2, age},
    Function{u"Today", 0, 0, today, nullptr, true},
    Function{u"Now", 0, 0, now, nullptr, true},
};

} // namespace

std::span<const Function> dateFunctions()
{
    return kFunctions;
}

} // namespace corvane

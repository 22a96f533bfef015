#include "platform/dates/date_text.h"
#include "platform/engine/expression/functions.h"
#include "platform/engine/expression/operators.h"

namespace corvane {

namespace {

Datum toText(const Arguments &arguments)
{
    return arguments.text(0);
}

Datum toNumber(const Arguments &arguments)
{
    if (arguments.at(0).kind() != DatumKind::Text)
        return arguments.number(0);
    const QByteArray text = arguments.text(0).trimmed().toUtf8();
    if (const auto exact = Decimal::parse(text))
        return *exact;
    bool isNumber = false;
    const double real = text.toDouble(&isNumber);
    if (!isNumber || text.contains("n") || text.contains("N"))
        arguments.refuse(
            QStringLiteral("a text that is a number, not %1").arg(describe(arguments.at(0))));
    return finite(real);
}

/// The order in which the system's short dates stand.
DateOrder orderOf(const ValueTextStyle &style)
{
    const qsizetype year = style.dateFormat.indexOf(u'y');
    const qsizetype month = style.dateFormat.indexOf(u'M');
    const qsizetype day = style.dateFormat.indexOf(u'd');
    if (year < month && year < day)
        return DateOrder::YearMonthDay;
    return day < month ? DateOrder::DayMonthYear : DateOrder::MonthDayYear;
}

QTime readTime(const QString &text)
{
    for (const QStringView format :
        {u"H:mm:ss", u"H:mm", u"h:mm:ss AP", u"h:mm AP", u"H:mm:ss.zzz", u"H:mm:ss.z"}) {
        if (const QTime time = QTime::fromString(text, format.toString()); time.isValid())
            return time;
    }
    return {};
}

/// A date and perhaps a time behind it, parted by blanks or a T. Eight digits are year, month, day.
QDateTime readMoment(const QString &text, DateOrder order)
{
    const qsizetype colon = text.indexOf(u':');
    const qsizetype blank
        = colon < 0 ? -1 : std::max(text.lastIndexOf(u' ', colon), text.lastIndexOf(u'T', colon));
    if (colon >= 0 && blank < 0)
        return {};
    const QString day = blank < 0 ? text : text.first(blank).trimmed();
    const auto date
        = readDate(day, day.size() == 8 && !day.contains(u'/') ? DateOrder::YearMonthDay : order);
    const QTime time = blank < 0 ? QTime(0, 0) : readTime(text.sliced(blank + 1).trimmed());
    return date && date->year() > 0 && time.isValid() ? QDateTime(*date, time, Qt::UTC)
                                                      : QDateTime();
}

QDateTime momentOf(const Arguments &arguments)
{
    if (arguments.at(0).isDate())
        return arguments.at(0).dateTime();
    const bool isText = arguments.at(0).kind() == DatumKind::Text;
    const QDateTime moment = isText
        ? readMoment(arguments.text(0).trimmed(), orderOf(arguments.context().style()))
        : QDateTime();
    if (!moment.isValid())
        arguments.refuse(
            QStringLiteral("a date such as 2026-11-30, not %1").arg(describe(arguments.at(0))));
    return moment;
}

Datum toDate(const Arguments &arguments)
{
    return Datum::date(momentOf(arguments).date());
}

Datum toDateTime(const Arguments &arguments)
{
    return Datum::dateTime(momentOf(arguments));
}

Datum formatValue(const Arguments &arguments)
{
    const ValueTextStyle &style = arguments.context().style();
    if (arguments.call().format)
        return arguments.call().format->apply(arguments.at(0), style);
    const auto format = ValueFormat::compile(arguments.text(1));
    if (const auto *fault = std::get_if<ExpressionFault>(&format))
        arguments.refuse(QStringLiteral("a format as its second argument: %1").arg(fault->words));
    return std::get<ValueFormat>(format).apply(arguments.at(0), style);
}

constexpr std::array kFunctions{
    Function{u"Text", 1, 1, toText},
    Function{u"Number", 1, 1, toNumber},
    Function{u"ToDate", 1, 1, toDate},
    Function{u"ToDateTime", 1, 1, toDateTime},
    Function{u"Format", 2, 2, formatValue},
};

} // namespace

std::span<const Function> conversionFunctions()
{
    return kFunctions;
}

} // namespace corvane

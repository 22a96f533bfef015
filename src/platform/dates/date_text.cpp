#include "platform/dates/date_text.h"

#include <QtCore/QList>

#include <array>

namespace corvane {

namespace {

using Parts = std::array<QStringView, 3>; ///< in the order in which they stand

constexpr int kFirstShortYear = 1930;

bool isDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

bool isSeparator(QChar c)
{
    return c == u'/' || c == u'-' || c == u'.' || c == u' ';
}

std::optional<Parts> digitsAsParts(QStringView digits, DateOrder order)
{
    if (digits.size() != 8)
        return std::nullopt;
    if (order == DateOrder::YearMonthDay)
        return Parts {digits.first(4), digits.sliced(4, 2), digits.last(2)};
    return Parts {digits.first(2), digits.sliced(2, 2), digits.last(4)};
}

std::optional<Parts> splitParts(QStringView text, DateOrder order)
{
    QList<QStringView> groups;
    for (qsizetype at = 0; at < text.size();) {
        const qsizetype begin = at;
        while (at < text.size() && isDigit(text[at]))
            ++at;
        if (at == begin)
            return std::nullopt;
        groups += text.sliced(begin, at - begin);
        while (at < text.size() && isSeparator(text[at]))
            ++at;
    }
    if (groups.size() == 1)
        return digitsAsParts(groups.first(), order);
    if (groups.size() != 3)
        return std::nullopt;
    return Parts {groups[0], groups[1], groups[2]};
}

std::optional<int> readYear(QStringView digits)
{
    if (digits.size() == 4)
        return digits.toInt();
    if (digits.size() != 2)
        return std::nullopt;
    const int year = kFirstShortYear / 100 * 100 + digits.toInt();
    return year < kFirstShortYear ? year + 100 : year;
}

} // namespace

DateOrder dateOrderOf(int number)
{
    return number == 1 || number == 2 ? DateOrder(number) : DateOrder::MonthDayYear;
}

QString dateText(QDate date, DateOrder order)
{
    switch (order) {
    case DateOrder::DayMonthYear:
        return date.toString(u"dd/MM/yyyy");
    case DateOrder::YearMonthDay:
        return date.toString(u"yyyy/MM/dd");
    case DateOrder::MonthDayYear:
        break;
    }
    return date.toString(u"MM/dd/yyyy");
}

std::optional<QDate> readDate(QStringView text, DateOrder order)
{
    const std::optional<Parts> parts = splitParts(text.trimmed(), order);
    if (!parts)
        return std::nullopt;
    const bool yearInFront = (*parts)[0].size() == 4
        || (order == DateOrder::YearMonthDay && (*parts)[2].size() != 4);
    const QStringView yearDigits = (*parts)[yearInFront ? 0 : 2];
    const QStringView one = (*parts)[yearInFront ? 1 : 0];
    const QStringView two = (*parts)[yearInFront ? 2 : 1];
    const std::optional<int> year = readYear(yearDigits);
    if (!year || one.size() > 2 || two.size() > 2)
        return std::nullopt;
    const bool dayFirst = !yearInFront && order == DateOrder::DayMonthYear;
    const QDate date(*year, (dayFirst ? two : one).toInt(), (dayFirst ? one : two).toInt());
    return date.isValid() ? std::optional(date) : std::nullopt;
}

int dayNumber(QDate date)
{
    return date.isValid() ? int(QDate(1899, 12, 30).daysTo(date)) : 0;
}

} // namespace corvane

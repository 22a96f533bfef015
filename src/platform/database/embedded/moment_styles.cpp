#include "platform/database/embedded/moment_styles.h"

#include "platform/database/embedded/date_parts.h"

#include <algorithm>
#include <array>

namespace corvane::embedded {

namespace {

/// Y year, y its last two digits, m month, b its short name, d day, e day padded with a blank,
/// H hour, I hour of twelve padded with a blank, M minute, S second, f milliseconds, p AM or PM.
struct Style
{
    int number;
    const char *pattern;
};

constexpr std::array kStyles{
    Style{0, "b e Y I:Mp"},
    Style{100, "b e Y I:Mp"},
    Style{1, "m/d/y"},
    Style{101, "m/d/Y"},
    Style{2, "y.m.d"},
    Style{102, "Y.m.d"},
    Style{3, "d/m/y"},
    Style{103, "d/m/Y"},
    Style{4, "d.m.y"},
    Style{104, "d.m.Y"},
    Style{5, "d-m-y"},
    Style{105, "d-m-Y"},
    Style{6, "d b y"},
    Style{106, "d b Y"},
    Style{7, "b d, y"},
    Style{107, "b d, Y"},
    Style{8, "H:M:S"},
    Style{24, "H:M:S"},
    Style{108, "H:M:S"},
    Style{9, "b e Y I:M:S:fp"},
    Style{109, "b e Y I:M:S:fp"},
    Style{10, "m-d-y"},
    Style{110, "m-d-Y"},
    Style{11, "y/m/d"},
    Style{111, "Y/m/d"},
    Style{12, "ymd"},
    Style{112, "Ymd"},
    Style{13, "d b Y H:M:S:f"},
    Style{113, "d b Y H:M:S:f"},
    Style{14, "H:M:S:f"},
    Style{114, "H:M:S:f"},
    Style{20, "Y-m-d H:M:S"},
    Style{120, "Y-m-d H:M:S"},
    Style{21, "Y-m-d H:M:S.f"},
    Style{25, "Y-m-d H:M:S.f"},
    Style{121, "Y-m-d H:M:S.f"},
    Style{22, "m/d/y I:M:S p"},
    Style{23, "Y-m-d"},
    Style{126, "Y-m-dTH:M:S"},
    Style{127, "Y-m-dTH:M:SZ"},
};

constexpr QByteArrayView kTimeLetters("HIMSfp");

/// A date has no time to show and a time no date: the style's other half is left out.
QByteArrayView halfFor(QByteArrayView pattern, ValueKind kind)
{
    const auto found
        = std::ranges::find_if(pattern, [](char c) { return kTimeLetters.contains(c); });
    const qsizetype time = found - pattern.begin();
    if (kind == ValueKind::Date)
        return time == 0 || time == pattern.size() ? pattern.first(time) : pattern.first(time - 1);
    return kind == ValueKind::Time ? pattern.sliced(time) : pattern;
}

void appendNumber(QByteArray &out, int number, int digits)
{
    char buffer[4];
    out.append(buffer, putDigits(buffer, number, digits) - buffer);
}

/// One or two digits, with a blank for the missing one.
void appendPadded(QByteArray &out, int number)
{
    out.append(number < 10 ? ' ' : char('0' + number / 10));
    out.append(char('0' + number % 10));
}

void appendPart(QByteArray &out, char letter, Moment moment)
{
    const auto part = [&](DatePart p) { return partOf(moment, p); };
    switch (letter) {
    case 'Y':
        return appendNumber(out, part(DatePart::Year), 4);
    case 'y':
        return appendNumber(out, part(DatePart::Year), 2);
    case 'm':
        return appendNumber(out, part(DatePart::Month), 2);
    case 'b':
        out.append(monthName(part(DatePart::Month)), 3);
        return;
    case 'd':
        return appendNumber(out, part(DatePart::Day), 2);
    case 'e':
        return appendPadded(out, part(DatePart::Day));
    case 'H':
        return appendNumber(out, part(DatePart::Hour), 2);
    case 'I':
        return appendPadded(out, (part(DatePart::Hour) + 11) % 12 + 1);
    case 'M':
        return appendNumber(out, part(DatePart::Minute), 2);
    case 'S':
        return appendNumber(out, part(DatePart::Second), 2);
    case 'f':
        return appendNumber(out, part(DatePart::Millisecond), 3);
    case 'p':
        out.append(part(DatePart::Hour) < 12 ? "AM" : "PM");
        return;
    default:
        out.append(letter);
    }
}

int defaultStyle(ValueKind kind, int fraction)
{
    return kind == ValueKind::Date ? 23 : fraction >= 0 ? 121 : kind == ValueKind::Time ? 108 : 0;
}

/// The digits behind the seconds, which start with the milliseconds: more zeros, fewer, or none.
void resizeFraction(QByteArray &out, int digits)
{
    constexpr int kMilliseconds = 3;
    if (digits > kMilliseconds)
        out.append(digits - kMilliseconds, '0');
    else
        out.chop(digits == 0 ? kMilliseconds + 1 : kMilliseconds - digits);
}

} // namespace

std::optional<QByteArray> styledText(
    Moment moment, ValueKind kind, std::optional<int> style, int fraction)
{
    const int number = style.value_or(defaultStyle(kind, fraction));
    const auto known = std::ranges::find(kStyles, number, &Style::number);
    if (known == kStyles.end())
        return std::nullopt;
    QByteArray out;
    for (const char letter : halfFor(known->pattern, kind)) {
        appendPart(out, letter, moment);
        if (letter == 'f' && fraction >= 0)
            resizeFraction(out, fraction);
    }
    // The style with a "T" shows milliseconds only when there are any.
    if (number == 126 && kind != ValueKind::Date && moment.timeOfDay() % 1000 != 0)
        appendNumber(out.append('.'), partOf(moment, DatePart::Millisecond), 3);
    return out;
}

DateOrder orderOfStyle(int style, DateOrder fallback)
{
    switch (style % 100) {
    case 1:
    case 10:
        return DateOrder::MonthDayYear;
    case 3:
    case 4:
    case 5:
    case 13:
        return DateOrder::DayMonthYear;
    case 2:
    case 11:
    case 12:
    case 20:
    case 21:
    case 23:
    case 25:
    case 26:
        return DateOrder::YearMonthDay;
    default:
        return fallback;
    }
}

} // namespace corvane::embedded

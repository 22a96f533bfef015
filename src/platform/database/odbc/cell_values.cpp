#include "platform/database/odbc/cell_values.h"

#include <QtCore/QVarLengthArray>

#include <algorithm>
#include <charconv>

namespace corvane::odbc {

namespace {

constexpr qint64 kMsPerSecond = 1'000;
constexpr qint64 kMsPerDay = 86'400'000;
constexpr int kNanosPerMs = 1'000'000;

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

qint64 dayNumber(int year, int month, int day)
{
    static const qint64 epoch = QDate(1970, 1, 1).toJulianDay();
    return QDate(year, month, day).toJulianDay() - epoch;
}

/// The number of two digits at an offset; -1 when there are none.
int twoDigits(QByteArrayView text, qsizetype at)
{
    if (text.size() < at + 2 || !isDigit(text[at]) || !isDigit(text[at + 1]))
        return -1;
    return (text[at] - '0') * 10 + (text[at + 1] - '0');
}

qint64 milliseconds(QByteArrayView fraction)
{
    qint64 ms = 0;
    for (qsizetype i = 0; i < 3; ++i)
        ms = ms * 10 + (i < fraction.size() ? fraction[i] - '0' : 0);
    return ms;
}

} // namespace

double shortestReal(float number)
{
    char digits[40];
    const auto end = std::to_chars(digits, std::end(digits), number);
    double result = number;
    std::from_chars(digits, end.ptr, result);
    return result;
}

qint64 epochDay(const SQL_DATE_STRUCT &date)
{
    return dayNumber(date.year, date.month, date.day);
}

qint64 epochMs(const SQL_TIMESTAMP_STRUCT &moment)
{
    const qint64 seconds = (moment.hour * 60LL + moment.minute) * 60 + moment.second;
    return dayNumber(moment.year, moment.month, moment.day) * kMsPerDay + seconds * kMsPerSecond
        + qint64(moment.fraction / kNanosPerMs);
}

void addDecimal(RowsetBuilder &builder, QByteArrayView digits)
{
    digits = digits.trimmed();
    const bool negative = digits.startsWith('-');
    const QByteArrayView rest = digits.sliced(negative ? 1 : 0);
    if (rest.isEmpty() || !std::ranges::all_of(rest, [](char c) { return isDigit(c) || c == '.'; }))
        return builder.addText(digits);
    if (!rest.startsWith('.'))
        return builder.add(Value::decimal(digits.data(), quint32(digits.size())));
    QVarLengthArray<char, 96> whole;
    if (negative)
        whole.append('-');
    whole.append('0');
    whole.append(rest.data(), rest.size());
    builder.add(Value::decimal(whole.data(), quint32(whole.size())));
}

void addTime(RowsetBuilder &builder, QByteArrayView text)
{
    text = text.trimmed();
    const int hour = twoDigits(text, 0);
    const int minute = twoDigits(text, 3);
    const int second = twoDigits(text, 6);
    if (hour < 0 || minute < 0 || second < 0 || hour > 23)
        return builder.addText(text);
    qint64 ms = ((hour * 60LL + minute) * 60 + second) * kMsPerSecond;
    if (text.size() > 8 && text[8] == '.') {
        const QByteArrayView fraction = text.sliced(9);
        const auto end = std::ranges::find_if_not(fraction, isDigit);
        ms += milliseconds(fraction.first(end - fraction.begin()));
    }
    builder.add(Value::time(ms));
}

void addText(RowsetBuilder &builder, QStringView utf16)
{
    QVarLengthArray<char, 1024> narrow(utf16.size());
    const char16_t *from = utf16.utf16();
    char16_t seen = 0;
    for (qsizetype i = 0; i < utf16.size(); ++i) {
        narrow[i] = char(from[i]);
        seen |= from[i];
    }
    if (seen < 0x80)
        builder.addText(QByteArrayView(narrow.constData(), narrow.size()));
    else
        builder.addText(utf16.toUtf8());
}

} // namespace corvane::odbc

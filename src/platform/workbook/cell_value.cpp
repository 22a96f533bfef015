#include "platform/workbook/cell_value.h"

#include <QtCore/QDate>

#include <algorithm>
#include <charconv>
#include <cmath>

namespace corvane {

namespace {

constexpr int kExactDigits = 15;
constexpr double kMsPerDay = 86'400'000;
/// Epoch days of 30 December 1899, which serial dates count from, and of the first and last day
/// they are used for.
constexpr qint64 kSerialZero = -25'569;
constexpr qint64 kFirstDay = kSerialZero + 61;
constexpr qint64 kLastDay = kSerialZero + 2'958'465;

CellValue number(double n)
{
    return {CellKind::Number, n == 0 ? 0 : n}; // no negative zero
}

CellValue asText(CellKind kind)
{
    return {kind, 0};
}

CellValue realCell(double real)
{
    // The format has no numbers between zero and the smallest normal one.
    return real == 0 || std::isnormal(real) ? number(real) : asText(CellKind::NumberAsText);
}

CellValue integerCell(qint64 n)
{
    constexpr qint64 kLimit = 1'000'000'000'000'000;
    if (n > -kLimit && n < kLimit)
        return number(double(n));
    qint64 significant = n;
    while (significant % 10 == 0)
        significant /= 10;
    const bool isExact = significant > -kLimit && significant < kLimit;
    return isExact ? number(double(n)) : asText(CellKind::NumberAsText);
}

CellValue decimalCell(QByteArrayView digits)
{
    const DecimalShape shape = decimalShape(digits);
    if (!shape.isNumber || shape.significant > kExactDigits)
        return asText(CellKind::NumberAsText);
    if (digits.startsWith('+'))
        digits = digits.sliced(1);
    double value = 0;
    const auto read = std::from_chars(digits.begin(), digits.end(), value);
    return read.ec == std::errc() ? realCell(value) : asText(CellKind::NumberAsText);
}

CellValue dateCell(qint64 day, double dayFraction)
{
    if (day < kFirstDay || day > kLastDay)
        return asText(CellKind::DateAsText);
    return number(double(day - kSerialZero) + dayFraction);
}

CellValue dateTimeCell(qint64 ms)
{
    constexpr auto kDay = qint64(kMsPerDay);
    const qint64 day = ms / kDay - (ms % kDay < 0 ? 1 : 0);
    return dateCell(day, double(ms - day * kDay) / kMsPerDay);
}

void appendHex(QByteArray &out, QByteArrayView data)
{
    // What a cell cannot hold need not be written out; one byte more shows that it was cut.
    constexpr qsizetype kMost = 16'384;
    out += "0x";
    out += data.first(std::min(data.size(), kMost)).toByteArray().toHex().toUpper();
}

} // namespace

CellValue cellValue(const Value &value)
{
    switch (value.kind()) {
    case ValueKind::Null:
        return {};
    case ValueKind::Integer:
        return integerCell(value.number());
    case ValueKind::Real:
        return realCell(value.realNumber());
    case ValueKind::Decimal:
        return decimalCell(value.data());
    case ValueKind::Text:
        return asText(CellKind::Text);
    case ValueKind::Date:
        return dateCell(value.number(), 0);
    case ValueKind::DateTime:
        return dateTimeCell(value.number());
    case ValueKind::Time:
        return number(double(value.number()) / kMsPerDay);
    case ValueKind::Boolean:
        return {CellKind::Boolean, value.number() ? 1.0 : 0.0};
    case ValueKind::Bytes:
        return asText(CellKind::BytesAsText);
    }
    return {};
}

void appendCellText(QByteArray &out, const Value &value, CellKind kind, const ValueTextStyle &style)
{
    if (kind == CellKind::Text)
        out += value.data();
    else if (kind == CellKind::BytesAsText)
        appendHex(out, value.data());
    else
        out += valueText(value, style).toUtf8();
}

DecimalShape decimalShape(QByteArrayView digits)
{
    if (digits.startsWith('-') || digits.startsWith('+'))
        digits = digits.sliced(1);
    const qsizetype point = digits.indexOf('.');
    QByteArrayView whole = point < 0 ? digits : digits.first(point);
    QByteArrayView fraction = point < 0 ? QByteArrayView() : digits.sliced(point + 1);
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    DecimalShape shape;
    shape.isNumber = whole.size() + fraction.size() > 0
        && std::all_of(whole.begin(), whole.end(), isDigit)
        && std::all_of(fraction.begin(), fraction.end(), isDigit);
    while (fraction.endsWith('0'))
        fraction.chop(1);
    while (whole.startsWith('0'))
        whole = whole.sliced(1);
    shape.whole = std::max(1, int(whole.size()));
    shape.fraction = int(fraction.size());
    if (fraction.isEmpty()) {
        while (whole.endsWith('0'))
            whole.chop(1);
    } else if (whole.isEmpty()) {
        while (fraction.startsWith('0'))
            fraction = fraction.sliced(1);
    }
    shape.significant = int(whole.size() + fraction.size());
    return shape;
}

} // namespace corvane

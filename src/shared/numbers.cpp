#include "shared/numbers.h"

#include "shared/run_time_fault.h"

#include <QtCore/QLocale>

#include <cmath>
#include <limits>

namespace corvane {

namespace {

double halfToEven(double value)
{
    const double below = std::floor(value);
    const double rest = value - below;
    if (rest != 0.5)
        return rest < 0.5 ? below : below + 1;
    return std::fmod(below, 2.0) == 0.0 ? below : below + 1;
}

template <typename Whole>
Whole toWhole(double value)
{
    const double whole = halfToEven(value);
    const bool fits = whole >= double(std::numeric_limits<Whole>::min())
        && whole <= double(std::numeric_limits<Whole>::max());
    if (!fits)
        throw RunTimeFault(RunTimeFault::Overflow,
            QStringLiteral("%1 is beyond %2").arg(value).arg(std::numeric_limits<Whole>::max()));
    return Whole(whole);
}

qsizetype digitsEnd(QStringView text, qsizetype from)
{
    while (from < text.size() && text[from] >= u'0' && text[from] <= u'9')
        ++from;
    return from;
}

} // namespace

double leadingNumber(QStringView text)
{
    qsizetype begin = 0;
    while (begin < text.size() && (text[begin] == u' ' || text[begin] == u'\t'))
        ++begin;
    text = text.sliced(begin);
    const qsizetype sign = !text.isEmpty() && (text[0] == u'-' || text[0] == u'+') ? 1 : 0;
    qsizetype end = digitsEnd(text, sign);
    if (end < text.size() && text[end] == u'.')
        end = digitsEnd(text, end + 1);
    // A lone sign or point is no number, and reads as 0 like any other text.
    return QLocale::c().toDouble(text.first(end));
}

double strictNumber(QStringView text)
{
    const QStringView trimmed = text.trimmed();
    bool ok = false;
    const double number = QLocale::c().toDouble(trimmed, &ok);
    if (!ok || !std::isfinite(number))
        throw RunTimeFault(RunTimeFault::TypeMismatch, QStringLiteral("\"%1\" is no number").arg(trimmed.left(40)));
    return number;
}

double strictNumber(const Value &value)
{
    switch (value.kind()) {
    case ValueKind::Integer:
        return double(value.number());
    case ValueKind::Boolean:
        return value.number() ? -1 : 0;
    case ValueKind::Real:
        return value.realNumber();
    default:
        return strictNumber(valueText(value, {}));
    }
}

qint16 toInt16(double value)
{
    return toWhole<qint16>(value);
}

qint32 toInt32(double value)
{
    return toWhole<qint32>(value);
}

double roundTo(double value, int decimals)
{
    const double m = std::round(std::pow(10.0, decimals));
    return std::trunc((0.5 / m + value) * m) / m;
}

} // namespace corvane

#include "platform/database/value.h"

#include <QtCore/QLocale>

#include <charconv>

namespace corvane {

namespace {

constexpr qint64 kMsPerDay = 86'400'000;

/// Cells are mostly ASCII: widened in place; anything else goes through the library's decoder.
void appendUtf8(QString &out, QByteArrayView utf8)
{
    const qsizetype old = out.size();
    out.resize(old + utf8.size());
    QChar *to = out.data() + old;
    for (qsizetype i = 0; i < utf8.size(); ++i) {
        const auto c = uchar(utf8[i]);
        if (c >= 0x80) {
            out.truncate(old + i);
            out += QString::fromUtf8(utf8.sliced(i));
            return;
        }
        to[i] = QChar(char16_t(c));
    }
}

void appendDecimal(QString &out, QByteArrayView digits)
{
    qsizetype length = digits.size();
    if (digits.contains('.')) {
        while (length > 0 && digits[length - 1] == '0')
            --length;
        if (length > 0 && digits[length - 1] == '.')
            --length;
    }
    const QByteArrayView kept = digits.first(length);
    appendUtf8(out, kept == "-0" ? QByteArrayView("0") : kept);
}

template <typename Number>
void appendNumber(QString &out, Number number)
{
    char buffer[40];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, number);
    appendUtf8(out, QByteArrayView(buffer, end.ptr - buffer));
}

void appendReal(QString &out, double number)
{
    char buffer[40];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, number, std::chars_format::general, 15);
    appendUtf8(out, QByteArrayView(buffer, end.ptr - buffer));
}

/// The formats that reports meet most, written out; QLocale formats the rest.
bool appendPlainDate(QString &out, QDate date, const QString &format)
{
    if (format != u"MM/dd/yyyy")
        return false;
    const int year = date.year();
    if (year < 1000 || year > 9999)
        return false;
    const auto digit = [](int n) { return QChar(char16_t(u'0' + n % 10)); };
    const int month = date.month();
    const int day = date.day();
    const QChar text[] = {digit(month / 10), digit(month), u'/', digit(day / 10), digit(day), u'/',
        digit(year / 1000), digit(year / 100), digit(year / 10), digit(year)};
    out.append(text, std::size(text));
    return true;
}

void appendDate(QString &out, QDate date, const ValueTextStyle &style)
{
    if (!appendPlainDate(out, date, style.dateFormat))
        out += QLocale::c().toString(date, style.dateFormat);
}

qint64 floorDiv(qint64 value, qint64 divisor)
{
    const qint64 quotient = value / divisor;
    return value % divisor < 0 ? quotient - 1 : quotient;
}

QDate epochDate(qint64 day)
{
    return QDate::fromJulianDay(day + QDate(1970, 1, 1).toJulianDay());
}

void appendTime(QString &out, qint64 ms, const ValueTextStyle &style)
{
    out += QLocale::c().toString(QTime::fromMSecsSinceStartOfDay(int(ms)), style.timeFormat);
}

} // namespace

void appendValueText(QString &out, const Value &value, const ValueTextStyle &style)
{
    switch (value.kind()) {
    case ValueKind::Null:
        break;
    case ValueKind::Integer:
        appendNumber(out, value.number());
        break;
    case ValueKind::Real:
        appendReal(out, value.realNumber());
        break;
    case ValueKind::Decimal:
        appendDecimal(out, value.data());
        break;
    case ValueKind::Text:
    case ValueKind::Bytes:
        appendUtf8(out, value.data());
        break;
    case ValueKind::Boolean:
        out += value.number() ? QLatin1StringView("True") : QLatin1StringView("False");
        break;
    case ValueKind::Date:
        appendDate(out, epochDate(value.number()), style);
        break;
    case ValueKind::DateTime: {
        const qint64 day = floorDiv(value.number(), kMsPerDay);
        const qint64 ms = value.number() - day * kMsPerDay;
        appendDate(out, epochDate(day), style);
        if (ms != 0) {
            out += u' ';
            appendTime(out, ms, style);
        }
        break;
    }
    case ValueKind::Time:
        appendTime(out, value.number(), style);
        break;
    }
}

QString valueText(const Value &value, const ValueTextStyle &style)
{
    QString text;
    appendValueText(text, value, style);
    return text;
}

} // namespace corvane

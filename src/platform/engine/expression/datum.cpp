#include "platform/engine/expression/datum.h"

#include <QtCore/QHashFunctions>

#include <cmath>

namespace corvane {

namespace {

constexpr qint64 kMsPerDay = 86'400'000;

const QDate kEpoch(1970, 1, 1);

/// Kinds that compare with each other share a rank.
int rank(DatumKind kind)
{
    switch (kind) {
    case DatumKind::Null:
        return 0;
    case DatumKind::Boolean:
        return 1;
    case DatumKind::Number:
    case DatumKind::Real:
        return 2;
    case DatumKind::Text:
        return 3;
    case DatumKind::Date:
    case DatumKind::DateTime:
        return 4;
    case DatumKind::Time:
        return 5;
    case DatumKind::Bytes:
        break;
    }
    return 6;
}

std::strong_ordering compareReals(double a, double b)
{
    return a < b ? std::strong_ordering::less
        : a > b  ? std::strong_ordering::greater
                 : std::strong_ordering::equal;
}

/// A real stands for its shortest decimal, so that 0.1 is 0.1 whatever a column is made of.
std::strong_ordering compareNumbers(const Datum &a, const Datum &b)
{
    const auto exact = [](const Datum &datum) {
        return datum.kind() == DatumKind::Real ? Decimal::fromReal(datum.toReal())
                                               : datum.decimal();
    };
    if (a.kind() == DatumKind::Real && b.kind() == DatumKind::Real)
        return compareReals(a.toReal(), b.toReal());
    const std::optional<Decimal> x = exact(a);
    const std::optional<Decimal> y = exact(b);
    return x && y ? *x <=> *y : compareReals(a.toReal(), b.toReal());
}

QStringView withoutTrailingBlanks(QStringView text)
{
    while (text.endsWith(u' '))
        text.chop(1);
    return text;
}

} // namespace

Datum::Datum(const Value &value)
{
    switch (value.kind()) {
    case ValueKind::Null:
        break;
    case ValueKind::Integer:
        m_value = Decimal(value.number());
        break;
    case ValueKind::Real:
        *this = real(value.realNumber());
        break;
    case ValueKind::Decimal:
        if (const auto exact = Decimal::parse(value.data()))
            m_value = *exact;
        else
            *this = real(value.data().toByteArray().toDouble());
        break;
    case ValueKind::Text:
        m_value = QString::fromUtf8(value.data());
        break;
    case ValueKind::Bytes:
        m_value = value.data().toByteArray();
        break;
    case ValueKind::Boolean:
        m_value = value.number() != 0;
        break;
    case ValueKind::Date:
        m_value = Day{value.number()};
        break;
    case ValueKind::DateTime:
        m_value = Moment{value.number()};
        break;
    case ValueKind::Time:
        m_value = Clock{value.number()};
        break;
    }
}

Datum Datum::real(double real)
{
    return std::isnan(real) ? Datum() : Datum(Variant(real));
}

Datum Datum::date(QDate date)
{
    return date.isValid() ? Datum(Variant(Day{kEpoch.daysTo(date)})) : Datum();
}

Datum Datum::dateTime(const QDateTime &moment)
{
    if (!moment.isValid())
        return {};
    return Datum(
        Variant(Moment{QDateTime(moment.date(), moment.time(), Qt::UTC).toMSecsSinceEpoch()}));
}

Datum Datum::time(QTime time)
{
    return time.isValid() ? Datum(Variant(Clock{time.msecsSinceStartOfDay()})) : Datum();
}

bool Datum::isNumeric() const
{
    return kind() == DatumKind::Number || kind() == DatumKind::Real || kind() == DatumKind::Boolean;
}

Decimal Datum::decimal() const
{
    return kind() == DatumKind::Boolean ? Decimal(std::get<bool>(m_value) ? 1 : 0)
                                        : std::get<Decimal>(m_value);
}

double Datum::toReal() const
{
    return kind() == DatumKind::Real ? std::get<double>(m_value) : decimal().toReal();
}

qint64 Datum::epochMs() const
{
    return kind() == DatumKind::Date ? std::get<Day>(m_value).epochDay * kMsPerDay
                                     : std::get<Moment>(m_value).epochMs;
}

QDate Datum::date() const
{
    return dateTime().date();
}

QDateTime Datum::dateTime() const
{
    return QDateTime::fromMSecsSinceEpoch(epochMs(), Qt::UTC);
}

QTime Datum::time() const
{
    if (kind() == DatumKind::Time)
        return QTime::fromMSecsSinceStartOfDay(int(std::get<Clock>(m_value).ms));
    return dateTime().time();
}

bool Datum::isTrue() const
{
    switch (kind()) {
    case DatumKind::Boolean:
        return std::get<bool>(m_value);
    case DatumKind::Number:
        return !decimal().isZero();
    case DatumKind::Real:
        return toReal() != 0;
    default:
        return false;
    }
}

QString Datum::toText(const ValueTextStyle &style) const
{
    QString text;
    appendText(text, style);
    return text;
}

void Datum::appendText(QString &out, const ValueTextStyle &style) const
{
    switch (kind()) {
    case DatumKind::Null:
        break;
    case DatumKind::Boolean:
        return appendValueText(out, Value::boolean(isTrue()), style);
    case DatumKind::Number:
        out += decimal().toString();
        break;
    case DatumKind::Real:
        return appendValueText(out, Value::real(toReal()), style);
    case DatumKind::Text:
        out += text();
        break;
    case DatumKind::Date:
        return appendValueText(out, Value::date(std::get<Day>(m_value).epochDay), style);
    case DatumKind::DateTime:
        return appendValueText(out, Value::dateTime(epochMs()), style);
    case DatumKind::Time:
        return appendValueText(out, Value::time(std::get<Clock>(m_value).ms), style);
    case DatumKind::Bytes:
        return appendValueText(
            out, Value::bytes(bytes().constData(), quint32(bytes().size())), style);
    }
}

std::strong_ordering compare(const Datum &a, const Datum &b)
{
    if (const auto order = rank(a.kind()) <=> rank(b.kind()); order != 0)
        return order;
    switch (a.kind()) {
    case DatumKind::Null:
        return std::strong_ordering::equal;
    case DatumKind::Boolean:
        return a.isTrue() <=> b.isTrue();
    case DatumKind::Number:
    case DatumKind::Real:
        return compareNumbers(a, b);
    case DatumKind::Text:
        return compareTexts(a.text(), b.text());
    case DatumKind::Date:
    case DatumKind::DateTime:
        return a.epochMs() <=> b.epochMs();
    case DatumKind::Time:
        return std::get<Datum::Clock>(a.m_value).ms <=> std::get<Datum::Clock>(b.m_value).ms;
    case DatumKind::Bytes:
        break;
    }
    return a.bytes().compare(b.bytes()) <=> 0;
}

size_t qHash(const Datum &datum, size_t seed)
{
    switch (datum.kind()) {
    case DatumKind::Null:
        return seed;
    case DatumKind::Boolean:
        return ::qHash(datum.isTrue(), seed);
    case DatumKind::Number:
    case DatumKind::Real:
        return ::qHash(datum.toReal(), seed);
    case DatumKind::Text:
        return ::qHash(withoutTrailingBlanks(datum.text()).toString().toCaseFolded(), seed);
    case DatumKind::Date:
    case DatumKind::DateTime:
        return ::qHash(datum.epochMs(), seed);
    case DatumKind::Time:
        return ::qHash(std::get<Datum::Clock>(datum.m_value).ms, seed);
    case DatumKind::Bytes:
        break;
    }
    return ::qHash(datum.bytes(), seed);
}

std::strong_ordering compareTexts(QStringView a, QStringView b)
{
    return withoutTrailingBlanks(a).compare(withoutTrailingBlanks(b), Qt::CaseInsensitive) <=> 0;
}

} // namespace corvane

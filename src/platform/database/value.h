#pragma once

#include <QtCore/QDateTime>
#include <QtCore/QString>

namespace corvane {

enum class ValueKind : quint8 { Null, Integer, Real, Decimal, Text, Date, DateTime, Time, Boolean, Bytes };

/// A view of one cell of a rowset, valid as long as the rowset lives.
/// Text and decimals are UTF-8; a decimal keeps its exact digits, as in "-12.3400".
class Value
{
public:
    constexpr Value() = default;

    static constexpr Value integer(qint64 n) { return {ValueKind::Integer, n}; }
    static constexpr Value boolean(bool b) { return {ValueKind::Boolean, b ? 1 : 0}; }
    static constexpr Value real(double d) { return Value(d); }
    /// Days since the first day of 1970; negative before it.
    static constexpr Value date(qint64 epochDay) { return {ValueKind::Date, epochDay}; }
    /// Milliseconds since midnight of the first day of 1970, without a time zone.
    static constexpr Value dateTime(qint64 epochMs) { return {ValueKind::DateTime, epochMs}; }
    /// Milliseconds after midnight.
    static constexpr Value time(qint64 ms) { return {ValueKind::Time, ms}; }
    static constexpr Value text(const char *utf8, quint32 length) { return {ValueKind::Text, utf8, length}; }
    static constexpr Value decimal(const char *digits, quint32 length) { return {ValueKind::Decimal, digits, length}; }
    static constexpr Value bytes(const char *data, quint32 length) { return {ValueKind::Bytes, data, length}; }

    constexpr ValueKind kind() const { return m_kind; }
    constexpr bool isNull() const { return m_kind == ValueKind::Null; }

    /// Integer, Boolean, Date (epoch day), DateTime (epoch milliseconds) or Time (milliseconds).
    constexpr qint64 number() const { return m_number; }
    /// Only for Real.
    constexpr double realNumber() const { return m_real; }
    /// Text and Decimal as UTF-8, Bytes as they are; empty for every other kind.
    QByteArrayView data() const { return hasData() ? QByteArrayView(m_data, qsizetype(m_length)) : QByteArrayView(); }

private:
    constexpr Value(ValueKind kind, qint64 n) : m_number(n), m_kind(kind) { }
    constexpr explicit Value(double d) : m_real(d), m_kind(ValueKind::Real) { }
    constexpr Value(ValueKind kind, const char *data, quint32 length)
        : m_data(data), m_length(length), m_kind(kind) { }

    constexpr bool hasData() const
    {
        return m_kind == ValueKind::Text || m_kind == ValueKind::Decimal || m_kind == ValueKind::Bytes;
    }

    union {
        qint64 m_number = 0;
        double m_real;
        const char *m_data;
    };
    quint32 m_length = 0;
    ValueKind m_kind = ValueKind::Null;
};

static_assert(sizeof(Value) == 16);

/// How dates show: the system's short form with a four-digit year, and its time of day.
struct ValueTextStyle {
    QString dateFormat = QStringLiteral("MM/dd/yyyy");
    QString timeFormat = QStringLiteral("h:mm:ss AP");
};

/// The one text form of a value: null is empty, Booleans "True"/"False", decimals without trailing
/// zeros and with a point, dates by the style, the time of a date-time only when it is not midnight.
/// Appends to `out`, which a caller may reuse for many cells.
void appendValueText(QString &out, const Value &value, const ValueTextStyle &style);
QString valueText(const Value &value, const ValueTextStyle &style);

} // namespace corvane

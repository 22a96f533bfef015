#pragma once

#include "platform/database/value.h"
#include "platform/engine/expression/decimal.h"

#include <QtCore/QByteArray>
#include <QtCore/QDateTime>
#include <QtCore/QString>

#include <variant>

namespace corvane {

enum class DatumKind : quint8 { Null, Boolean, Number, Real, Text, Date, DateTime, Time, Bytes };

/// A computed value that owns its text. Whole numbers and decimals are exact, up to 38 digits; a
/// result that leaves them becomes a real.
class Datum
{
public:
    Datum() = default;
    Datum(const Decimal &number)
        : m_value(number)
    {
    }
    Datum(QString text)
        : m_value(std::move(text))
    {
    }
    explicit Datum(const Value &value);

    static Datum number(qint64 whole) { return Decimal(whole); }
    /// Not a number is null.
    static Datum real(double real);
    static Datum boolean(bool value) { return Datum(Variant(value)); }
    static Datum bytes(QByteArray bytes) { return Datum(Variant(std::move(bytes))); }
    /// Null for an invalid one.
    static Datum date(QDate date);
    /// Date and time as they are, without regard to the time zone; null for an invalid one.
    static Datum dateTime(const QDateTime &moment);
    static Datum time(QTime time);

    DatumKind kind() const { return DatumKind(m_value.index()); }
    bool isNull() const { return kind() == DatumKind::Null; }
    /// Number, Real and Boolean.
    bool isNumeric() const;
    /// Date and DateTime.
    bool isDate() const { return kind() == DatumKind::Date || kind() == DatumKind::DateTime; }

    /// Number, and Boolean as 1 or 0; each of these only for its own kind.
    Decimal decimal() const;
    double toReal() const; ///< any numeric kind
    const QString &text() const { return std::get<QString>(m_value); }
    const QByteArray &bytes() const { return std::get<QByteArray>(m_value); }
    QDate date() const; ///< Date and DateTime
    QDateTime dateTime() const; ///< Date (at midnight) and DateTime; in UTC
    QTime time() const; ///< Time and DateTime; midnight for Date
    /// True, or a number other than 0.
    bool isTrue() const;

    /// The plain text form, the same as valueText() gives.
    QString toText(const ValueTextStyle &style) const;
    void appendText(QString &out, const ValueTextStyle &style) const;

    /// A total order for sorting, grouping and distinct values: null, Boolean, numbers, text,
    /// dates, times, bytes. Texts compare without regard to case and to trailing blanks, dates as
    /// their midnight.
    friend std::strong_ordering compare(const Datum &a, const Datum &b);
    friend bool operator==(const Datum &a, const Datum &b) { return compare(a, b) == 0; }
    friend size_t qHash(const Datum &datum, size_t seed);

private:
    struct Day
    {
        qint64 epochDay;
    };
    struct Moment
    {
        qint64 epochMs;
    };
    struct Clock
    {
        qint64 ms;
    };
    // In the order of DatumKind.
    using Variant = std::variant<std::monostate, bool, Decimal, double, QString, Day, Moment, Clock,
        QByteArray>;
    explicit Datum(Variant value)
        : m_value(std::move(value))
    {
    }

    qint64 epochMs() const;

    Variant m_value;
};

std::strong_ordering compare(const Datum &a, const Datum &b);
size_t qHash(const Datum &datum, size_t seed = 0);

/// Text without regard to case and to trailing blanks, as the clinic's servers compare it.
std::strong_ordering compareTexts(QStringView a, QStringView b);

} // namespace corvane

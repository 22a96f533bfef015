#pragma once

#include <QtCore/QByteArrayView>
#include <QtCore/QString>

#include <compare>
#include <optional>

namespace corvane {

/// An exact number: whole units of 10^-scale, 38 digits at least, no trailing zeros behind the
/// point. Operations that would not stay exact within it give nothing; division rounds.
class Decimal
{
public:
    using Units = __int128;
    static constexpr int kMaxScale = 38;
    static constexpr int kQuotientScale
        = 16; ///< digits behind the point that a quotient has at least

    constexpr Decimal() = default;
    constexpr Decimal(qint64 whole)
        : m_units(whole)
    {
    }
    /// units / 10^scale; the scale lies between 0 and kMaxScale.
    static Decimal fromUnits(Units units, int scale);
    /// Reads "-12.3400" or ".5"; nothing for other characters and for more digits than it holds.
    static std::optional<Decimal> parse(QByteArrayView digits);
    /// The shortest decimal that reads back as the same number; nothing where that is out of range.
    static std::optional<Decimal> fromReal(double real);

    Units units() const { return m_units; }
    int scale() const { return m_scale; }
    bool isZero() const { return m_units == 0; }
    bool isNegative() const { return m_units < 0; }
    bool isWhole() const { return m_scale == 0; }

    double toReal() const;
    /// The number without its fraction; nothing outside 64 bits.
    std::optional<qint64> toInt64() const;
    /// A point before the fraction, no thousands separators.
    QString toString() const;

    Decimal negated() const;
    Decimal truncated() const { return atScale(0, Rounding::TowardsZero); }
    Decimal floor() const;
    /// Halves go away from zero. A negative number of digits rounds to tens, hundreds and so on.
    Decimal rounded(int digits) const;

    friend std::optional<Decimal> operator+(const Decimal &a, const Decimal &b);
    friend std::optional<Decimal> operator-(const Decimal &a, const Decimal &b);
    friend std::optional<Decimal> operator*(const Decimal &a, const Decimal &b);
    /// The divisor is not zero. Halves of the last digit go away from zero.
    friend std::optional<Decimal> operator/(const Decimal &a, const Decimal &b);
    /// What the whole quotient leaves, with the sign of `a`. The divisor is not zero.
    friend std::optional<Decimal> remainder(const Decimal &a, const Decimal &b);

    bool operator==(const Decimal &) const = default;
    std::strong_ordering operator<=>(const Decimal &other) const;

private:
    enum class Rounding : quint8 { TowardsZero, HalfAwayFromZero };
    Decimal atScale(int scale, Rounding rounding) const;

    Units m_units = 0;
    int m_scale = 0;
};

} // namespace corvane

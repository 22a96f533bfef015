#include "platform/engine/expression/decimal.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace corvane {

namespace {

using Units = Decimal::Units;

constexpr std::array<Units, Decimal::kMaxScale + 1> kPowers = [] {
    std::array<Units, Decimal::kMaxScale + 1> powers{};
    powers[0] = 1;
    for (size_t i = 1; i < powers.size(); ++i)
        powers[i] = powers[i - 1] * 10;
    return powers;
}();

std::optional<Units> times(Units a, Units b)
{
    Units product;
    return __builtin_mul_overflow(a, b, &product) ? std::nullopt : std::optional(product);
}

std::optional<Units> scaledUp(Units units, int digits)
{
    if (digits == 0)
        return units;
    return digits > Decimal::kMaxScale ? std::nullopt : times(units, kPowers[size_t(digits)]);
}

/// Both numbers' units at the finer scale of the two.
struct Aligned
{
    Units a;
    Units b;
    int scale;
};

std::optional<Aligned> aligned(const Decimal &a, const Decimal &b)
{
    const int scale = std::max(a.scale(), b.scale());
    const auto x = scaledUp(a.units(), scale - a.scale());
    const auto y = scaledUp(b.units(), scale - b.scale());
    return x && y ? std::optional(Aligned{*x, *y, scale}) : std::nullopt;
}

Units magnitude(Units units)
{
    return units < 0 ? -units : units;
}

/// The lowest value has no positive counterpart and is left to reals.
bool isInRange(Units units)
{
    return units != std::numeric_limits<Units>::min();
}

std::optional<Decimal> checked(Units units, int scale)
{
    if (!isInRange(units) || scale > Decimal::kMaxScale)
        return std::nullopt;
    return Decimal::fromUnits(units, scale);
}

/// units/divisor with `digits` more decimal digits, rounded.
std::optional<Units> longDivision(Units units, Units divisor, int digits)
{
    const Units by = magnitude(divisor);
    Units quotient = magnitude(units) / by;
    Units rest = magnitude(units) % by;
    for (int i = 0; i < digits; ++i) {
        const auto nextRest = times(rest, 10);
        const auto shifted = times(quotient, 10);
        if (!nextRest || !shifted || __builtin_add_overflow(*shifted, *nextRest / by, &quotient))
            return std::nullopt;
        rest = *nextRest % by;
    }
    if (rest >= by - rest && __builtin_add_overflow(quotient, Units(1), &quotient))
        return std::nullopt;
    return (units < 0) == (divisor < 0) ? quotient : -quotient;
}

} // namespace

Decimal Decimal::fromUnits(Units units, int scale)
{
    while (scale > 0 && qint64(units) != units && units % 10 == 0) {
        units /= 10;
        --scale;
    }
    // Nearly all numbers are small, and dividing them is many times faster then.
    if (auto narrow = qint64(units); narrow == units) {
        for (; scale > 0 && narrow % 10 == 0; --scale)
            narrow /= 10;
        units = narrow;
    }
    Decimal decimal;
    decimal.m_units = units;
    decimal.m_scale = scale;
    return decimal;
}

std::optional<Decimal> Decimal::parse(QByteArrayView digits)
{
    const bool isNegative = digits.startsWith('-');
    if (isNegative || digits.startsWith('+'))
        digits = digits.sliced(1);
    Units units = 0;
    int scale = -1;
    bool hasDigit = false;
    if (digits.contains('.')) {
        for (; digits.endsWith('0'); hasDigit = true)
            digits.chop(1);
    }
    for (const char c : digits) {
        if (c == '.' && scale < 0) {
            scale = 0;
            continue;
        }
        if (c < '0' || c > '9')
            return std::nullopt;
        const auto shifted = times(units, 10);
        if (!shifted || __builtin_add_overflow(*shifted, Units(c - '0'), &units))
            return std::nullopt;
        hasDigit = true;
        if (scale >= 0)
            ++scale;
    }
    return hasDigit ? checked(isNegative ? -units : units, std::max(scale, 0)) : std::nullopt;
}

std::optional<Decimal> Decimal::fromReal(double real)
{
    char buffer[400];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, real, std::chars_format::fixed);
    return parse(QByteArrayView(buffer, end.ptr - buffer));
}

double Decimal::toReal() const
{
    constexpr Units kExact = Units(1) << 53;
    constexpr int kExactPower = 22;
    if (magnitude(m_units) < kExact && m_scale <= kExactPower)
        return double(m_units) / double(kPowers[size_t(m_scale)]);
    const QByteArray digits = toString().toLatin1();
    double real = 0;
    std::from_chars(digits.begin(), digits.end(), real);
    return real;
}

std::optional<qint64> Decimal::toInt64() const
{
    const Units whole = m_units / kPowers[size_t(m_scale)];
    const auto narrow = qint64(whole);
    return narrow == whole ? std::optional(narrow) : std::nullopt;
}

QString Decimal::toString() const
{
    char buffer[kMaxScale + 8];
    char *at = std::end(buffer);
    Units rest = magnitude(m_units);
    for (int written = 0; rest > 0 || written <= m_scale; ++written) {
        if (written == m_scale && m_scale > 0)
            *--at = '.';
        *--at = char('0' + int(rest % 10));
        rest /= 10;
    }
    if (isNegative())
        *--at = '-';
    return QString::fromLatin1(at, std::end(buffer) - at);
}

Decimal Decimal::negated() const
{
    return fromUnits(-m_units, m_scale);
}

Decimal Decimal::atScale(int scale, Rounding rounding) const
{
    if (scale >= m_scale)
        return *this;
    if (m_scale - scale > kMaxScale)
        return {};
    const Units step = kPowers[size_t(m_scale - scale)];
    const Units rest = magnitude(m_units % step);
    Units kept = m_units / step;
    if (rounding == Rounding::HalfAwayFromZero && rest >= step - rest)
        kept += isNegative() ? -1 : 1;
    if (scale >= 0)
        return fromUnits(kept, scale);
    return fromUnits(scaledUp(kept, -scale).value_or(0), 0);
}

Decimal Decimal::floor() const
{
    const Decimal whole = truncated();
    return isNegative() && whole != *this ? fromUnits(whole.m_units - 1, 0) : whole;
}

Decimal Decimal::rounded(int digits) const
{
    return atScale(digits, Rounding::HalfAwayFromZero);
}

std::optional<Decimal> operator+(const Decimal &a, const Decimal &b)
{
    const auto pair = aligned(a, b);
    Units sum;
    if (!pair || __builtin_add_overflow(pair->a, pair->b, &sum))
        return std::nullopt;
    return checked(sum, pair->scale);
}

std::optional<Decimal> operator-(const Decimal &a, const Decimal &b)
{
    return a + b.negated();
}

std::optional<Decimal> operator*(const Decimal &a, const Decimal &b)
{
    const auto product = times(a.m_units, b.m_units);
    return product ? checked(*product, a.m_scale + b.m_scale) : std::nullopt;
}

std::optional<Decimal> operator/(const Decimal &a, const Decimal &b)
{
    const int digits = std::max(0, Decimal::kQuotientScale - a.m_scale + b.m_scale);
    const auto quotient = longDivision(a.m_units, b.m_units, digits);
    return quotient ? checked(*quotient, a.m_scale - b.m_scale + digits) : std::nullopt;
}

std::optional<Decimal> remainder(const Decimal &a, const Decimal &b)
{
    const auto pair = aligned(a, b);
    return pair ? checked(pair->a % pair->b, pair->scale) : std::nullopt;
}

std::strong_ordering Decimal::operator<=>(const Decimal &other) const
{
    const auto x = scaledUp(m_units, std::max(0, other.m_scale - m_scale));
    const auto y = scaledUp(other.m_units, std::max(0, m_scale - other.m_scale));
    // Only the coarser number is scaled up: where it overflows, it is the larger one in magnitude.
    if (!x)
        return isNegative() ? std::strong_ordering::less : std::strong_ordering::greater;
    if (!y)
        return other.isNegative() ? std::strong_ordering::greater : std::strong_ordering::less;
    return *x <=> *y;
}

} // namespace corvane

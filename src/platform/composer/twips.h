#pragma once

#include <QtCore/QtGlobal>

#include <compare>

namespace corvane {

/// A length on paper: 1440 to the inch, 20 to the point. Rounded only where a fraction enters.
class Twips
{
public:
    constexpr Twips() = default;
    constexpr explicit Twips(qint32 count) : m_count(count) { }

    static constexpr Twips fromInches(double inches) { return rounded(inches * 1440.0); }
    static constexpr Twips fromPoints(double points) { return rounded(points * 20.0); }
    /// Nearest whole twip, halves away from zero.
    static constexpr Twips rounded(double twips) { return Twips(qint32(twips < 0 ? twips - 0.5 : twips + 0.5)); }

    constexpr qint32 count() const { return m_count; }
    constexpr double points() const { return m_count / 20.0; }

    constexpr auto operator<=>(const Twips &) const = default; // NOLINT(modernize-use-nullptr): clang-tidy 14 misreads it
    constexpr Twips operator-() const { return Twips(-m_count); }
    constexpr Twips &operator+=(Twips other) { m_count += other.m_count; return *this; }
    constexpr Twips &operator-=(Twips other) { m_count -= other.m_count; return *this; }
    friend constexpr Twips operator+(Twips a, Twips b) { return Twips(a.m_count + b.m_count); }
    friend constexpr Twips operator-(Twips a, Twips b) { return Twips(a.m_count - b.m_count); }
    friend constexpr Twips operator*(Twips a, qint32 n) { return Twips(a.m_count * n); }
    friend constexpr Twips operator/(Twips a, qint32 n) { return Twips(a.m_count / n); }

private:
    qint32 m_count = 0;
};

} // namespace corvane

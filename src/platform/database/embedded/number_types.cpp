#include "platform/database/embedded/sql_type.h"

#include <algorithm>

namespace corvane::embedded {

namespace {

constexpr int kMostDigits = 38;
constexpr int kLeastFraction = 6; ///< digits that a quotient or an average keeps at least

struct Digits
{
    int precision;
    int scale;
};

Digits digitsOf(const SqlType &type)
{
    constexpr int kDigitsOfInt = 10;
    if (type.kind == ValueKind::Boolean)
        return {1, 0};
    if (type.kind == ValueKind::Integer)
        return {type.precision < 0 ? kDigitsOfInt : type.precision, 0};
    return {type.precision < 0 ? kMostDigits : type.precision, std::max(type.scale, 0)};
}

bool isWhole(const SqlType &type)
{
    return type.kind == ValueKind::Integer || type.kind == ValueKind::Boolean;
}

SqlType decimal(int precision, int scale)
{
    return {
        .kind = ValueKind::Decimal, .scale = scale, .precision = std::min(precision, kMostDigits)};
}

/// Products and quotients beyond 38 digits give up digits behind the point, down to six.
SqlType shortened(int precision, int scale)
{
    const int whole = precision - scale;
    if (precision > kMostDigits)
        scale = std::min(scale, std::max(kMostDigits - whole, kLeastFraction));
    return decimal(precision, scale);
}

/// The cases that need no digits: no number, a real, two whole numbers, amounts. Empty otherwise.
std::optional<SqlType> plainType(const SqlType &left, const SqlType &right)
{
    if (!left.isNumber() || !right.isNumber())
        return SqlType();
    if (left.kind == ValueKind::Real || right.kind == ValueKind::Real)
        return SqlType{.kind = ValueKind::Real};
    if (isWhole(left) && isWhole(right)) {
        constexpr int kDigitsOfInt = 10;
        return SqlType{.kind = ValueKind::Integer,
            .precision
            = std::max({digitsOf(left).precision, digitsOf(right).precision, kDigitsOfInt})};
    }
    if ((left.money || isWhole(left)) && (right.money || isWhole(right)))
        return left.money ? left : right;
    return std::nullopt;
}

} // namespace

SqlType sumType(const SqlType &left, const SqlType &right)
{
    if (const auto plain = plainType(left, right))
        return *plain;
    const Digits a = digitsOf(left);
    const Digits b = digitsOf(right);
    const int whole = std::max(a.precision - a.scale, b.precision - b.scale);
    const int scale = std::max(a.scale, b.scale);
    const int kept = std::clamp(kMostDigits - whole, 0, scale);
    return decimal(whole + scale + 1, whole + scale + 1 > kMostDigits ? kept : scale);
}

SqlType productType(const SqlType &left, const SqlType &right)
{
    if (const auto plain = plainType(left, right))
        return *plain;
    const Digits a = digitsOf(left);
    const Digits b = digitsOf(right);
    return shortened(a.precision + b.precision + 1, a.scale + b.scale);
}

SqlType quotientType(const SqlType &left, const SqlType &right)
{
    if (const auto plain = plainType(left, right))
        return *plain;
    const Digits a = digitsOf(left);
    const Digits b = digitsOf(right);
    const int scale = std::max(kLeastFraction, a.scale + b.precision + 1);
    return shortened(a.precision - a.scale + b.scale + scale, scale);
}

SqlType remainderType(const SqlType &left, const SqlType &right)
{
    if (const auto plain = plainType(left, right))
        return *plain;
    const Digits a = digitsOf(left);
    const Digits b = digitsOf(right);
    const int scale = std::max(a.scale, b.scale);
    return decimal(std::min(a.precision - a.scale, b.precision - b.scale) + scale, scale);
}

SqlType totalType(const SqlType &type)
{
    SqlType total = type;
    if (type.kind == ValueKind::Decimal && !type.money)
        total.precision = kMostDigits;
    return total;
}

SqlType averageType(const SqlType &type)
{
    if (type.kind != ValueKind::Decimal || type.money)
        return type.kind == ValueKind::Boolean ? SqlType{.kind = ValueKind::Integer} : type;
    return decimal(kMostDigits, std::max(type.scale, kLeastFraction));
}

} // namespace corvane::embedded

#pragma once

#include "platform/database/value.h"

namespace corvane::embedded {

/// What is known of an expression before it runs. ValueKind::Null: nothing is known.
struct SqlType
{
    ValueKind kind = ValueKind::Null;
    int scale = -1; ///< digits after the point, also of a time's seconds; -1: not known, or none
    int precision = -1; ///< most digits of a Decimal or an Integer; -1: not known
    int length = -1; ///< most characters of a Text; -1: not given
    bool unlimited = false; ///< a Text of any length: "varchar(max)"
    bool padded = false; ///< a Text filled up with blanks to `length`
    bool money = false; ///< a Decimal that is an amount, which arithmetic and texts treat apart

    bool known() const { return kind != ValueKind::Null; }
    bool isText() const { return kind == ValueKind::Text; }
    bool isNumber() const
    {
        return kind == ValueKind::Integer || kind == ValueKind::Real || kind == ValueKind::Decimal
            || kind == ValueKind::Boolean;
    }
    bool isMoment() const
    {
        return kind == ValueKind::Date || kind == ValueKind::DateTime || kind == ValueKind::Time;
    }
};

/// What "+" and "-", "*", "/" and "%" give for two numbers: the server's rules for the digits of
/// exact numbers, which keep 38 of them. Nothing is known of the result when either is no number.
SqlType sumType(const SqlType &left, const SqlType &right);
SqlType productType(const SqlType &left, const SqlType &right);
SqlType quotientType(const SqlType &left, const SqlType &right);
SqlType remainderType(const SqlType &left, const SqlType &right);

/// What SUM and AVG give for a column of numbers.
SqlType totalType(const SqlType &type);
SqlType averageType(const SqlType &type);

/// The type that a column declaration or a conversion names, as in "decimal(10, 2)" or
/// "nvarchar(max)".
SqlType declaredType(QStringView declaration);

} // namespace corvane::embedded

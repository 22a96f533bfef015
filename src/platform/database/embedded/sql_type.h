#pragma once

#include "platform/database/value.h"

namespace corvane::embedded {

/// What is known of an expression before it runs. ValueKind::Null: nothing is known.
struct SqlType
{
    ValueKind kind = ValueKind::Null;
    int scale = -1; ///< digits after the point of a Decimal; -1: not known
    int length = -1; ///< most characters of a Text; -1: not given
    bool unlimited = false; ///< a Text of any length: "varchar(max)"
    bool padded = false; ///< a Text filled up with blanks to `length`

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

/// The type that a column declaration or a conversion names, as in "decimal(10, 2)" or
/// "nvarchar(max)".
SqlType declaredType(QStringView declaration);

} // namespace corvane::embedded

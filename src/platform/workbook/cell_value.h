#pragma once

#include "platform/database/value.h"

namespace corvane {

/// What a value becomes in a sheet; the last three are texts because the format has no such number.
enum class CellKind : quint8 {
    Empty,
    Number,
    Boolean,
    Text,
    NumberAsText,
    DateAsText,
    BytesAsText
};

struct CellValue
{
    CellKind kind = CellKind::Empty;
    double number = 0; ///< Number: the value or the serial date. Boolean: 0 or 1.

    bool isText() const { return kind >= CellKind::Text; }
};

/// The cell of a value. Numbers with more than 15 significant digits, infinities and the like, and
/// dates outside 1 March 1900 to 31 December 9999 become text: before that March readers disagree
/// about the day that a serial date means, because the format counts a 29 February 1900.
CellValue cellValue(const Value &value);

/// Appends the text of a cell that is one, as UTF-8: bytes as "0x0A1B", everything else in the one
/// text form of values.
void appendCellText(
    QByteArray &out, const Value &value, CellKind kind, const ValueTextStyle &style);

/// A decimal's digits, counted without the zeros that do not matter.
struct DecimalShape
{
    int significant = 0;
    int whole = 1; ///< digits before the point
    int fraction = 0; ///< digits after it, without trailing zeros
    bool isNumber = true;
};
DecimalShape decimalShape(QByteArrayView digits);

} // namespace corvane

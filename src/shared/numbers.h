#pragma once

#include "platform/database/value.h"

#include <QtCore/QStringView>

namespace corvane {

/// The longest leading decimal number after leading blanks: "12abc" is 12, "abc" and "" are 0.
double leadingNumber(QStringView text);

/// A text that is a number as a whole, blanks around it aside. @throws RunTimeFault TypeMismatch.
double strictNumber(QStringView text);

/// A cell as a number; True is -1. @throws RunTimeFault TypeMismatch for a text that is none.
double strictNumber(const Value &value);

/// Nearest whole number, halves to even. @throws RunTimeFault Overflow beyond the size.
qint16 toInt16(double value);
qint32 toInt32(double value);

/// Half a unit of the last kept decimal is added, then cut toward zero: deliberately not symmetric
/// for negative values.
double roundTo(double value, int decimals);

} // namespace corvane

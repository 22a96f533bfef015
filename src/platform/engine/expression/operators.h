#pragma once

#include "platform/engine/expression/program.h"

namespace corvane {

/// The largest text that an expression may make, in UTF-16 units.
inline constexpr qsizetype kLongestText = 1'000'000;

/// Both operands are no null. Exact as long as both are exact and the result fits; a date and a
/// number add days.
/// @throws EvaluationFault
Datum calculate(Operator op, const Datum &a, const Datum &b);

/// Null when one of them is null. @throws EvaluationFault for kinds that do not compare.
Datum compareBy(Operator op, const Datum &a, const Datum &b);

Datum negate(const Datum &number);

/// A real result. @throws EvaluationFault where it is beyond all numbers
Datum finite(double real);

/// As a date without its time, or with it. @throws EvaluationFault outside the years 1 to 9999
Datum dateWithin(const QDateTime &moment, bool isWholeDay);

/// Whether a condition holds: True or a number other than 0; null does not. @throws EvaluationFault
/// for other kinds
bool conditionHolds(const Datum &datum);

/// What a value is, for messages: the text "abc", the number 5, the date 11/01/2026.
QString describe(const Datum &datum);

/// @throws EvaluationFault for a text beyond kLongestText
void checkLength(qsizetype length);

} // namespace corvane

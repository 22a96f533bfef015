#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <optional>

namespace corvane {

/// The index-th piece of a "|"-separated list, counted from 1; 0 counts as 1, beyond the list is empty.
QString getPiece(QStringView text, int index);

/// The pieces between delimiters, the last one included. An empty text gives no array at all.
std::optional<QStringList> splitText(QStringView text, QStringView delimiter);

/// Whether an array has bounds, that is, was ever filled.
inline bool isDimmed(const std::optional<QStringList> &array) { return array.has_value(); }

/// How often the substring occurs, overlapping hits included.
/// @throws RunTimeFault Overflow beyond 32,767.
qint16 countOf(QStringView text, QStringView substring);

/// Every occurrence, left to right, case-sensitive, without looking again at what was put in.
/// An empty search text changes nothing.
QString replaceEvery(const QString &text, QStringView search, QStringView replacement);

/// Selects the whole text of any control with the members SelStart, SelLength and Text.
template <typename Control>
void selectText(Control &control)
{
    control.setSelStart(0);
    control.setSelLength(control.Text().size());
}

} // namespace corvane

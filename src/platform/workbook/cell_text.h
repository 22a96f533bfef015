#pragma once

#include <QtCore/QByteArrayView>
#include <QtCore/QString>

namespace corvane {

/// What had to be changed for a text to fit a cell.
struct TextChanges
{
    bool wasCut = false;
    int replaced = 0; ///< control characters

    bool any() const { return wasCut || replaced > 0; }
    bool operator==(const TextChanges &) const = default;
};

/// Turns UTF-8 into the characters of a cell: at most 32,767 UTF-16 units, never half of a
/// surrogate pair; CR LF and CR become the line feed that the format uses; other control characters
/// except the tab, and the two code points that are no characters, become U+FFFD.
TextChanges setCellText(QString &out, QByteArrayView utf8);

/// The changes that setCellText would make, quickly for the usual text that needs none.
TextChanges cellTextChanges(QByteArrayView utf8);

/// About how many columns of a fixed-width font the text takes: East Asian letters and emoji two,
/// marks none.
int textWidth(QByteArrayView utf8);

} // namespace corvane

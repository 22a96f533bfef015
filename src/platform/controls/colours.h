#pragma once

#include <QtGui/QPalette>

namespace corvane {

/// Whether the palette shows light text on a dark ground.
bool isDark(const QPalette &palette);

/// Whether text and window stand as far apart as in palettes for readers who need all the contrast
/// there is; ordinary palettes do not.
bool isExtreme(const QPalette &palette);

/// How far two opaque colours stand apart, 1 to 21: the contrast ratio of WCAG 2.1.
double contrast(const QColor &a, const QColor &b);

/// Two opaque colours mixed; the share, 0 to 1, is the first one's.
QColor blended(const QColor &a, const QColor &b, double share);

/// The window's text colour, mixed with the window's as far as the text still reads well on it.
QColor quietText(const QPalette &palette);

/// Between text and window colour, at least 3:1 against the latter: what outlines need to be seen.
QColor outlineOnDark(const QPalette &palette);

/// Gives the selection the program's blue where a style's own leaves its text too pale to read; a
/// palette whose selection reads well stays as it is.
QPalette withReadableSelection(QPalette palette);

} // namespace corvane

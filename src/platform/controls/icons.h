#pragma once

#include <QtGui/QGuiApplication>
#include <QtGui/QIcon>
#include <QtGui/QPalette>

namespace corvane {

/// One of the program's drawings (a file name of resources/icons without its ending), in the inks that
/// stand out from the palette's window colour; a palette of extreme contrast gets its own text colour
/// alone. "app" and the message boxes' signs keep their colours.
QIcon icon(const QString &name, const QPalette &palette = QGuiApplication::palette());

/// Whether the palette shows light text on a dark ground.
bool isDark(const QPalette &palette);

/// How far two opaque colours stand apart, 1 to 21: the contrast ratio of WCAG 2.1.
double contrast(const QColor &a, const QColor &b);

/// The window's text colour, mixed with the window's as far as the text still reads well on it.
QColor quietText(const QPalette &palette);

/// Between text and window colour, at least 3:1 against the latter: what outlines need to be seen.
QColor outlineOnDark(const QPalette &palette);

/// Gives the selection the program's blue where a style's own leaves its text too pale to read; a
/// palette whose selection reads well stays as it is.
QPalette withReadableSelection(QPalette palette);

} // namespace corvane

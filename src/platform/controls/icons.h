#pragma once

#include <QtGui/QGuiApplication>
#include <QtGui/QIcon>
#include <QtGui/QPalette>

namespace corvane {

/// One of the program's drawings (a file name of resources/icons without its ending), in the inks that
/// stand out from the palette's window colour; a palette of extreme contrast gets its own text colour
/// alone. "app" and the message boxes' signs keep their colours.
QIcon icon(const QString &name, const QPalette &palette = QGuiApplication::palette());

} // namespace corvane

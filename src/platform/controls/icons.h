#pragma once

#include <QtGui/QGuiApplication>
#include <QtGui/QIcon>
#include <QtGui/QPalette>

namespace corvane {

/// One of the program's drawings (a file name of resources/icons without its ending), in the ink that
/// stands out from the palette's window colour. "app" is the program's own icon and has one ink.
QIcon icon(const QString &name, const QPalette &palette = QGuiApplication::palette());

/// Whether the palette shows light text on a dark ground.
bool isDark(const QPalette &palette);

} // namespace corvane

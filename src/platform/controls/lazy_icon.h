#pragma once

#include <QtGui/QIcon>
#include <QtGui/QPixmap>

#include <functional>

namespace corvane {

/// A square icon whose drawings are read when they are first shown, each size by itself: reading
/// all of them took a quarter of the time from the program's start to its first window.
/// @param sizes the sides in pixels that there are drawings of, ascending; none: the icon is null
/// @param read the drawing of one of these sizes
QIcon lazyIcon(const QList<int> &sizes, std::function<QPixmap(int size, QIcon::Mode mode)> read);

} // namespace corvane

#pragma once

#include "platform/preview/page_text.h"

#include <QtGui/QColor>

class QPainter;

namespace corvane {

enum class Outline { None, Drawn };

/// Tints letters of a page as a marker pen does: the ink stays black and readable. The painter's
/// origin is the paper's upper left corner; an outline makes a mark stand out without its colour.
/// @return how many areas were tinted
int paintMarks(QPainter &painter, const PageText &text, TextStretch stretch, double pixelsPerTwip,
    QColor tint, Outline outline = Outline::None);

} // namespace corvane

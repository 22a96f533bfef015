#include "platform/preview/page_marks.h"

#include <QtGui/QPainter>

namespace corvane {

int paintMarks(QPainter &painter, const PageText &text, TextStretch stretch, double pixelsPerTwip,
    QColor tint, Outline outline)
{
    int count = 0;
    painter.save();
    painter.setCompositionMode(QPainter::CompositionMode_Multiply);
    for (const QRectF &area : text.areasOf(stretch)) {
        const QRectF scaled(area.topLeft() * pixelsPerTwip, area.size() * pixelsPerTwip);
        painter.fillRect(scaled, tint);
        if (outline == Outline::Drawn) {
            painter.setPen(QPen(tint.darker(220), 1));
            painter.drawRect(scaled.adjusted(-0.5, -0.5, 0.5, 0.5));
        }
        ++count;
    }
    painter.restore();
    return count;
}

} // namespace corvane

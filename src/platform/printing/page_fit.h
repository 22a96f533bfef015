#pragma once

#include "platform/composer/document.h"

#include <QtCore/QRectF>

#include <span>

namespace corvane {

/// Where a page goes on the paper in the printer, in twips from the paper's upper left corner.
struct PageFit
{
    double scale = 1;
    QPointF origin; ///< of the page

    bool isScaled() const { return scale < 1; }
};

/// What the pages (index from 0) put ink on, with their headers and footers, in twips. Text counts
/// with its whole line height.
QRectF inkedArea(const Document &document, std::span<const int> pages);

/// In its own size and centred on the paper when all ink lies within the printable area, else
/// scaled down evenly until the page does, and centred there. All in twips.
PageFit fitPage(QSizeF page, const QRectF &ink, QSizeF paper, const QRectF &printable);

} // namespace corvane

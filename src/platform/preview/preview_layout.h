#pragma once

#include "platform/composer/twips.h"

#include <QtCore/QPointF>
#include <QtCore/QRect>
#include <QtCore/QSize>

namespace corvane {

/// Pages as a document has them, before any scale.
struct PageSet
{
    int count = 0;
    Twips paperWidth;
    Twips paperHeight;
    int first = 0; ///< number of the first one, where not all are laid out
};

/// A spot on one page, in fractions of its width and height, that stays the same spot at any scale.
struct PageSpot
{
    int page = 0;
    double across = 0; ///< 0 to 1
    double down = 0; ///< 0 to 1
    QPointF beside; ///< how far beyond the paper's edge, in pixels
};

/// Where pages of a document, all or one, lie in the area that the preview scrolls over: one below
/// the other, all of one size. Pixels are the widget's; pages count from 0. Every answer is
/// arithmetic, whatever the number of pages.
class PreviewLayout
{
public:
    static constexpr int kMargin = 16; ///< around the pages, room for their shadow
    static constexpr int kGap
        = 22; ///< between two pages: more than margin and shadow, so that a page can stand alone

    PreviewLayout() = default;
    PreviewLayout(const PageSet &pages, double pixelsPerTwip);

    double pixelsPerTwip() const { return m_pixelsPerTwip; }
    QSize pageSize() const { return m_pageSize; }
    QSize contentSize() const;
    /// With the left margin at 0.
    QRect pageRect(int page) const;
    /// The page at a height, with the gap below it; the nearest one beyond the ends. -1 without
    /// pages.
    int pageAt(int y) const;
    /// The page of which most shows between two heights; the upper one of equals. -1 without pages.
    int mostVisiblePage(int top, int bottom) const;

    PageSpot spotAt(QPointF point) const;
    QPointF pointOf(const PageSpot &spot) const;

private:
    int m_first = 0;
    int m_pageCount = 0;
    double m_pixelsPerTwip = 0;
    QSize m_pageSize;
};

/// Pixels per twip at which the page's width fits into a view, measured without scroll bars.
/// @param scrollBar thickness of the vertical scroll bar, set aside when the pages will need one
double scaleToWidth(const PageSet &pages, QSize view, int scrollBar);
/// The same for the whole page.
double scaleToPage(const PageSet &pages, QSize view, int scrollBar);

} // namespace corvane

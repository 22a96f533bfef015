#include "platform/preview/preview_layout.h"

#include <algorithm>
#include <cmath>

namespace corvane {

PreviewLayout::PreviewLayout(const PageSet &pages, double pixelsPerTwip)
    : m_first(pages.first)
    , m_pageCount(pages.count)
    , m_pixelsPerTwip(pixelsPerTwip)
    , m_pageSize(int(std::lround(pages.paperWidth.count() * pixelsPerTwip)),
          int(std::lround(pages.paperHeight.count() * pixelsPerTwip)))
{
}

QSize PreviewLayout::contentSize() const
{
    if (m_pageCount == 0)
        return {};
    return {m_pageSize.width() + 2 * kMargin,
        m_pageCount * m_pageSize.height() + (m_pageCount - 1) * kGap + 2 * kMargin};
}

QRect PreviewLayout::pageRect(int page) const
{
    return {QPoint(kMargin, kMargin + (page - m_first) * (m_pageSize.height() + kGap)), m_pageSize};
}

int PreviewLayout::pageAt(int y) const
{
    if (m_pageCount == 0)
        return -1;
    return m_first + std::clamp((y - kMargin) / (m_pageSize.height() + kGap), 0, m_pageCount - 1);
}

int PreviewLayout::mostVisiblePage(int top, int bottom) const
{
    int best = pageAt(top);
    int most = -1;
    // Of the pages between the first two and the last all show whole, so the second stands for
    // them.
    const int last = pageAt(bottom);
    for (const int page : {best, std::min(best + 1, last), last}) {
        if (page < 0)
            break;
        const QRect rect = pageRect(page);
        const int shown = std::min(rect.bottom(), bottom) - std::max(rect.top(), top);
        if (shown > most) {
            most = shown;
            best = page;
        }
    }
    return best;
}

PageSpot PreviewLayout::spotAt(QPointF point) const
{
    if (m_pageCount == 0) // there is no paper that could be near
        return {0, 0, 0, point - pageRect(0).topLeft()};
    const int page = std::max(0, pageAt(int(std::floor(point.y()))));
    const QRectF sheet(pageRect(page));
    const QPointF on(std::clamp(point.x(), sheet.left(), sheet.right()),
        std::clamp(point.y(), sheet.top(), sheet.bottom()));
    return {page, (on.x() - sheet.left()) / std::max(1.0, sheet.width()),
        (on.y() - sheet.top()) / std::max(1.0, sheet.height()), point - on};
}

QPointF PreviewLayout::pointOf(const PageSpot &spot) const
{
    const QRectF sheet(pageRect(spot.page));
    return sheet.topLeft() + QPointF(spot.across * sheet.width(), spot.down * sheet.height())
        + spot.beside;
}

double scaleToWidth(const PageSet &pages, QSize view, int scrollBar)
{
    const auto scale = [&](int width) {
        return (width - 2 * PreviewLayout::kMargin) / double(pages.paperWidth.count());
    };
    const double unobstructed = scale(view.width());
    const bool fits = PreviewLayout(pages, unobstructed).contentSize().height() <= view.height();
    return fits ? unobstructed : scale(view.width() - scrollBar);
}

double scaleToPage(const PageSet &pages, QSize view, int scrollBar)
{
    const int width = view.width() - 2 * PreviewLayout::kMargin - (pages.count > 1 ? scrollBar : 0);
    const int height = view.height() - 2 * PreviewLayout::kMargin;
    return std::min(
        width / double(pages.paperWidth.count()), height / double(pages.paperHeight.count()));
}

} // namespace corvane

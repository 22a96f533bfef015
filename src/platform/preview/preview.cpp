#include "platform/preview/preview.h"

#include "platform/preview/document_links.h"
#include "platform/preview/preview_accessible.h"
#include "platform/preview/preview_finder.h"
#include "platform/preview/preview_pointer.h"

#include <QtCore/QScopedValueRollback>
#include <QtGui/QAccessible>
#include <QtGui/QAction>
#include <QtGui/QCursor>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QToolTip>

#include <algorithm>
#include <cmath>

namespace corvane {

namespace {

constexpr int kLineStep = 40; ///< pixels that an arrow key moves
constexpr int kTwipsPerInch = 1440;
constexpr double kHitFromTop
    = 1.0 / 3; ///< where a hit that was out of sight comes to stand in the view
constexpr int kHitMargin = 24; ///< pixels that are to show around a hit
constexpr std::array<double, 13> kZoomSteps{
    10, 25, 33, 50, 75, 100, 125, 150, 200, 250, 300, 400, 500};

} // namespace

Preview::Preview(QWidget *parent)
    : QAbstractScrollArea(parent)
    , m_finder(new PreviewFinder(this))
    , m_pointer(new PreviewPointer(this))
{
    describePreviewsToReaders();
    setAccessibleName(tr("Report preview"));
    setFocusPolicy(Qt::StrongFocus);
    setFrameShape(QFrame::NoFrame);
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    verticalScrollBar()->setSingleStep(kLineStep);
    horizontalScrollBar()->setSingleStep(kLineStep);
    makeActions();
    connect(m_finder, &PreviewFinder::changed, viewport(), qOverload<>(&QWidget::update));
    connect(m_finder, &PreviewFinder::changed, this, &Preview::updateActions);
    connect(m_finder, &PreviewFinder::hitReached, this, [this](const SearchHit &hit) {
        for (const QRectF &area : PageText(*m_document, hit.page).areasOf(hit.text))
            return showArea(hit.page, area);
    });
}

void Preview::setDocument(DocumentPtr document)
{
    m_pointer->reset();
    m_document = std::move(document);
    m_currentPage = -1;
    m_trail.clear();
    setSelection({});
    m_layout = PreviewLayout(pages(), pixelsPerTwip(m_zoomPercent));
    {
        const QScopedValueRollback placing(m_placing, true);
        refit();
        verticalScrollBar()->setValue(0);
        horizontalScrollBar()->setValue(horizontalScrollBar()->maximum() / 2);
    }
    setCurrentPage(pageCount() > 0 ? 0 : -1);
    m_finder->setDocument(m_document);
    viewport()->update();
    updateActions();
    Q_EMIT documentChanged();
}

void Preview::setEmptyText(const QString &text)
{
    m_emptyText = text;
    if (pageCount() == 0)
        viewport()->update();
}

void Preview::setZoomMode(ZoomMode mode)
{
    m_zoomMode = mode;
    layOut(fittingPercent(), {});
    Q_EMIT zoomChanged();
}

void Preview::setZoomPercent(double percent)
{
    zoomAround(percent, QRectF(viewport()->rect()).center());
}

void Preview::setViewMode(ViewMode mode)
{
    if (mode == m_viewMode)
        return;
    const int page = m_currentPage;
    m_viewMode = mode;
    layOut(fittingPercent(), {});
    goToPage(page);
    Q_EMIT viewModeChanged();
    Q_EMIT zoomChanged();
}

void Preview::goToPage(int page)
{
    goToPlace(page, {});
}

void Preview::goToPlace(int page, Twips top)
{
    if (page < 0 || page >= pageCount())
        return;
    leaveFor(page);
    const QScopedValueRollback placing(m_placing, true);
    setCurrentPage(page);
    verticalScrollBar()->setValue(m_layout.pageRect(page).top()
        + int(top.count() * m_layout.pixelsPerTwip()) - PreviewLayout::kMargin);
}

void Preview::zoomIn()
{
    const auto next = std::upper_bound(kZoomSteps.begin(), kZoomSteps.end(), m_zoomPercent + 0.5);
    setZoomPercent(next == kZoomSteps.end() ? ViewSettings::kMostZoom : *next);
}

void Preview::zoomOut()
{
    const auto same = std::lower_bound(kZoomSteps.begin(), kZoomSteps.end(), m_zoomPercent - 0.5);
    setZoomPercent(same == kZoomSteps.begin() ? ViewSettings::kLeastZoom : *std::prev(same));
}

Preview::PaperPoint Preview::paperPointAt(QPointF viewportPoint) const
{
    const QPointF content = viewportPoint + contentOrigin();
    const int page = m_layout.pageAt(int(std::floor(content.y())));
    if (page < 0)
        return {};
    return {page, (content - m_layout.pageRect(page).topLeft()) / m_layout.pixelsPerTwip()};
}

void Preview::setSelection(const TextSelection &selection)
{
    m_selection = selection;
    viewport()->update();
    updateActions();
    Q_EMIT selectionChanged();
}

void Preview::followLink(const QString &target)
{
    const auto sayAtPointer
        = [this](const QString &words) { QToolTip::showText(QCursor::pos(), words, viewport()); };
    if (const std::optional<QUrl> address = webAddress(target))
        return Q_EMIT webLinkActivated(*address);
    if (const std::optional<Bookmark> bookmark = bookmarkOf(*m_document, target))
        return goToPlace(bookmark->page, bookmark->top);
    if (target.startsWith(u'#'))
        return sayAtPointer(
            tr("The link leads to “%1”, which is not in this report.").arg(target.mid(1)));
    sayAtPointer(tr("“%1” was not opened: links may lead to http, https and mailto addresses only.")
                     .arg(target));
}

PageSet Preview::pages() const
{
    if (!m_document)
        return {};
    const bool isSingle = m_viewMode == ViewMode::SinglePage && pageCount() > 0;
    return {isSingle ? 1 : pageCount(), m_document->paperWidth, m_document->paperHeight,
        isSingle ? std::max(0, m_currentPage) : 0};
}

double Preview::pixelsPerTwip(double percent) const
{
    return percent / 100 * logicalDpiY() / kTwipsPerInch;
}

/// The scale that the zoom mode asks for at the present size.
double Preview::fittingPercent() const
{
    if (m_zoomMode == ZoomMode::Fixed || pageCount() == 0)
        return m_zoomPercent;
    const int scrollBar = verticalScrollBar()->sizeHint().width();
    const double scale = m_zoomMode == ZoomMode::PageWidth
        ? scaleToWidth(pages(), maximumViewportSize(), scrollBar)
        : scaleToPage(pages(), maximumViewportSize(), scrollBar);
    return std::clamp(scale / pixelsPerTwip(1), ViewSettings::kLeastZoom, ViewSettings::kMostZoom);
}

void Preview::zoomAround(double percent, QPointF viewportPoint)
{
    m_zoomMode = ZoomMode::Fixed;
    layOut(std::clamp(percent, ViewSettings::kLeastZoom, ViewSettings::kMostZoom), viewportPoint);
    Q_EMIT zoomChanged();
}

/// Lays the pages out at a scale and keeps what stands at `anchor` (in the viewport) where it is.
void Preview::layOut(double percent, QPointF anchor)
{
    const PageSpot spot = m_layout.spotAt(anchor + contentOrigin());
    m_zoomPercent = percent;
    m_layout = PreviewLayout(pages(), pixelsPerTwip(percent));
    updateScrollBars();
    if (pageCount() > 0) {
        const QScopedValueRollback placing(m_placing, true);
        scrollTo(m_layout.pointOf(spot) - anchor);
    }
    if (m_currentPage >= 0 && !isOnScreen(m_currentPage))
        noteVisiblePage();
    viewport()->update();
    updateActions();
}

/// Follows a change of size or of the document.
void Preview::refit()
{
    const double before = m_zoomPercent;
    layOut(fittingPercent(), {});
    if (m_zoomPercent != before)
        Q_EMIT zoomChanged();
}

void Preview::updateScrollBars()
{
    const QScopedValueRollback placing(m_placing, true);
    const QSize content = m_layout.contentSize();
    const QSize view = viewport()->size();
    verticalScrollBar()->setPageStep(view.height());
    verticalScrollBar()->setRange(0, std::max(0, content.height() - view.height()));
    horizontalScrollBar()->setPageStep(view.width());
    horizontalScrollBar()->setRange(0, std::max(0, content.width() - view.width()));
}

/// What of the content stands in the viewport's upper left corner; negative where pages are
/// centred.
QPoint Preview::contentOrigin() const
{
    const int spare = std::max(0, viewport()->width() - m_layout.contentSize().width());
    return {horizontalScrollBar()->value() - spare / 2, verticalScrollBar()->value()};
}

void Preview::scrollTo(QPointF content)
{
    horizontalScrollBar()->setValue(int(std::lround(content.x())));
    verticalScrollBar()->setValue(int(std::lround(content.y())));
}

void Preview::scrollBy(QPoint pixels)
{
    horizontalScrollBar()->setValue(horizontalScrollBar()->value() + pixels.x());
    verticalScrollBar()->setValue(verticalScrollBar()->value() + pixels.y());
}

void Preview::scrollVertically(int pixels)
{
    const int before = verticalScrollBar()->value();
    verticalScrollBar()->setValue(before + pixels);
    if (verticalScrollBar()->value() == before && m_viewMode == ViewMode::SinglePage)
        turnPage(pixels > 0 ? 1 : -1);
}

/// Goes on reading, or back, beyond the end of a page that is shown alone.
void Preview::turnPage(int step)
{
    const int page = m_currentPage;
    goToPage(page + step);
    if (step < 0 && m_currentPage != page)
        verticalScrollBar()->setValue(verticalScrollBar()->maximum());
}

/// Scrolls as little as is needed; what was out of sight comes to stand in the upper part of the
/// view.
void Preview::showArea(int page, const QRectF &twips)
{
    if (m_viewMode == ViewMode::SinglePage)
        goToPage(page);
    else
        leaveFor(page);
    const double scale = m_layout.pixelsPerTwip();
    const QRectF area = QRectF(twips.topLeft() * scale, twips.size() * scale)
                            .translated(m_layout.pageRect(page).topLeft());
    const QRectF view(contentOrigin(), viewport()->size());
    QPointF origin(horizontalScrollBar()->value(), verticalScrollBar()->value());
    if (area.top() < view.top() || area.bottom() > view.bottom())
        origin.setY(area.top() - view.height() * kHitFromTop);
    if (area.left() < view.left() || area.right() > view.right())
        origin.setX(std::min(
            area.left() - kHitMargin, std::max(area.right() + kHitMargin - view.width(), 0.0)));
    scrollTo(origin);
}

PageSpot Preview::spotShown() const
{
    return m_layout.spotAt(contentOrigin());
}

/// Keeps the way back of a jump; leafing to a page beside the current one is none.
void Preview::leaveFor(int page)
{
    if (m_currentPage < 0 || std::abs(page - m_currentPage) <= 1)
        return;
    m_trail.leave(spotShown());
    updateActions();
}

void Preview::goAlongTrail(std::optional<PageSpot> spot)
{
    if (!spot)
        return;
    const QScopedValueRollback placing(m_placing, true);
    setCurrentPage(spot->page);
    scrollTo(m_layout.pointOf(*spot));
    noteVisiblePage();
    updateActions();
}

bool Preview::isOnScreen(int page) const
{
    const QRect sheet = m_layout.pageRect(page);
    const int top = verticalScrollBar()->value();
    return sheet.bottom() >= top && sheet.top() < top + viewport()->height();
}

void Preview::setCurrentPage(int page)
{
    if (page == m_currentPage)
        return;
    m_currentPage = page;
    if (m_viewMode == ViewMode::SinglePage) {
        m_layout = PreviewLayout(pages(), m_layout.pixelsPerTwip());
        viewport()->update();
    }
    QAccessibleValueChangeEvent newText(this, page + 1);
    QAccessible::updateAccessibility(&newText);
    setAccessibleDescription(
        page < 0 ? QString() : tr("Page %1 of %2").arg(page + 1).arg(pageCount()));
    updateActions();
    Q_EMIT currentPageChanged(page);
}

void Preview::noteVisiblePage()
{
    const int top = verticalScrollBar()->value();
    setCurrentPage(m_layout.mostVisiblePage(top, top + viewport()->height()));
}

} // namespace corvane

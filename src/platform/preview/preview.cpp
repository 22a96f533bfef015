#include "platform/preview/preview.h"

#include "platform/controls/icons.h"

#include <QtCore/QScopedValueRollback>
#include <QtGui/QAction>
#include <QtGui/QPainter>
#include <QtGui/QWheelEvent>
#include <QtWidgets/QScrollBar>

#include <algorithm>
#include <cmath>

namespace corvane {

namespace {

constexpr double kWheelStep = 1.1;
constexpr int kLineStep = 40; ///< pixels that an arrow key moves
constexpr int kKeptOnPaging = 40; ///< pixels of the old screen that stay in view
constexpr int kShadowReach = 6;
constexpr int kTwipsPerInch = 1440;
constexpr std::array<double, 13> kZoomSteps {10, 25, 33, 50, 75, 100, 125, 150, 200, 250, 300, 400, 500};

struct CommandText {
    const char *name; ///< also the drawing, where it has one
    const char *text;
    QKeySequence::StandardKey standardKey;
    QKeyCombination key;
    Qt::ShortcutContext context;
};

// Moving between pages by Ctrl+Home and Ctrl+End belongs to lists and text boxes too, so it needs the focus.
constexpr std::array<CommandText, Preview::kCommandCount> kCommands {{
    {"first", "First page", QKeySequence::UnknownKey, Qt::CTRL | Qt::Key_Home, Qt::WidgetWithChildrenShortcut},
    {"previous", "Previous page", QKeySequence::UnknownKey, Qt::CTRL | Qt::Key_PageUp, Qt::WindowShortcut},
    {"next", "Next page", QKeySequence::UnknownKey, Qt::CTRL | Qt::Key_PageDown, Qt::WindowShortcut},
    {"last", "Last page", QKeySequence::UnknownKey, Qt::CTRL | Qt::Key_End, Qt::WidgetWithChildrenShortcut},
    {"zoom-in", "Zoom in", QKeySequence::ZoomIn, Qt::CTRL | Qt::Key_Equal, Qt::WindowShortcut},
    {"zoom-out", "Zoom out", QKeySequence::ZoomOut, Qt::CTRL | Qt::Key_Minus, Qt::WindowShortcut},
    {"actual-size", "Actual size", QKeySequence::UnknownKey, Qt::CTRL | Qt::Key_0, Qt::WindowShortcut},
}};

QList<QKeySequence> shortcutsOf(const CommandText &command)
{
    QList<QKeySequence> keys = QKeySequence::keyBindings(command.standardKey);
    if (const QKeySequence key(command.key); !keys.contains(key))
        keys += key;
    return keys;
}

QColor groundColour(const QPalette &palette)
{
    return isDark(palette) ? QColor(0x1f, 0x22, 0x26) : QColor(0xa6, 0xae, 0xb7);
}

QColor quietTextColour(const QPalette &palette)
{
    return isDark(palette) ? QColor(0xb4, 0xba, 0xc2) : QColor(0x2c, 0x36, 0x42);
}

} // namespace

Preview::Preview(QWidget *parent)
    : QAbstractScrollArea(parent)
{
    setAccessibleName(tr("Report preview"));
    setFocusPolicy(Qt::StrongFocus);
    setFrameShape(QFrame::NoFrame);
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    verticalScrollBar()->setSingleStep(kLineStep);
    horizontalScrollBar()->setSingleStep(kLineStep);
    makeActions();
}

void Preview::setDocument(DocumentPtr document)
{
    m_document = std::move(document);
    m_currentPage = -1;
    m_layout = PreviewLayout(pages(), pixelsPerTwip(m_zoomPercent));
    {
        const QScopedValueRollback placing(m_placing, true);
        refit();
        verticalScrollBar()->setValue(0);
        horizontalScrollBar()->setValue(horizontalScrollBar()->maximum() / 2);
    }
    setCurrentPage(pageCount() > 0 ? 0 : -1);
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

void Preview::goToPage(int page)
{
    if (page < 0 || page >= pageCount())
        return;
    {
        const QScopedValueRollback placing(m_placing, true);
        verticalScrollBar()->setValue(m_layout.pageRect(page).top() - PreviewLayout::kMargin);
    }
    setCurrentPage(page);
}

void Preview::zoomIn()
{
    const auto next = std::upper_bound(kZoomSteps.begin(), kZoomSteps.end(), m_zoomPercent + 0.5);
    setZoomPercent(next == kZoomSteps.end() ? kMostZoom : *next);
}

void Preview::zoomOut()
{
    const auto same = std::lower_bound(kZoomSteps.begin(), kZoomSteps.end(), m_zoomPercent - 0.5);
    setZoomPercent(same == kZoomSteps.begin() ? kLeastZoom : *std::prev(same));
}

bool Preview::event(QEvent *event)
{
    if (event->type() == QEvent::ScreenChangeInternal)
        refit();
    return QAbstractScrollArea::event(event);
}

void Preview::changeEvent(QEvent *event)
{
    QAbstractScrollArea::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        updateIcons();
        viewport()->update();
    }
}

void Preview::keyPressEvent(QKeyEvent *event)
{
    if ((event->modifiers() & (Qt::ControlModifier | Qt::AltModifier)) != Qt::NoModifier) {
        event->ignore(); // the actions' keys, also while there is nothing for them to do
        return;
    }
    const int screen = std::max(kLineStep, viewport()->height() - kKeptOnPaging);
    const bool backwards = event->modifiers().testFlag(Qt::ShiftModifier);
    switch (event->key()) {
    case Qt::Key_PageDown:
        return scrollVertically(screen);
    case Qt::Key_PageUp:
        return scrollVertically(-screen);
    case Qt::Key_Space:
        return scrollVertically(backwards ? -screen : screen);
    case Qt::Key_Home:
        return goToPage(m_currentPage);
    case Qt::Key_End:
        if (m_currentPage >= 0)
            scrollTo(QPointF(horizontalScrollBar()->value(),
                m_layout.pageRect(m_currentPage).bottom() + PreviewLayout::kMargin - viewport()->height()));
        return;
    default:
        QAbstractScrollArea::keyPressEvent(event); // arrows
    }
}

void Preview::wheelEvent(QWheelEvent *event)
{
    if (!event->modifiers().testFlag(Qt::ControlModifier) || pageCount() == 0) {
        QAbstractScrollArea::wheelEvent(event);
        return;
    }
    const double notches = event->angleDelta().y() / double(QWheelEvent::DefaultDeltasPerStep);
    if (notches != 0)
        zoomAround(m_zoomPercent * std::pow(kWheelStep, notches), event->position());
    event->accept();
}

void Preview::resizeEvent(QResizeEvent *event)
{
    QAbstractScrollArea::resizeEvent(event);
    refit();
}

void Preview::scrollContentsBy(int dx, int dy)
{
    viewport()->scroll(dx, dy);
    if (!m_placing)
        noteVisiblePage();
}

void Preview::paintEvent(QPaintEvent *event)
{
    QPainter painter(viewport());
    painter.fillRect(event->rect(), groundColour(palette()));
    m_lastPaint = {};
    if (pageCount() == 0) {
        paintEmptyText(painter);
        return;
    }
    const QRect exposed = event->rect().translated(contentOrigin());
    const int last = m_layout.pageAt(exposed.bottom() + kShadowReach);
    for (int page = m_layout.pageAt(exposed.top() - kShadowReach); page <= last; ++page)
        paintSheet(painter, page, exposed);
}

void Preview::paintSheet(QPainter &painter, int page, const QRect &exposed)
{
    const QRect sheet = m_layout.pageRect(page);
    painter.save();
    painter.translate(sheet.topLeft() - contentOrigin());
    const QRect paper(QPoint(), sheet.size());
    for (int i = 0; i < kShadowReach; ++i) {
        painter.setPen(QColor(0, 0, 0, 48 / (i + 1)));
        painter.drawRoundedRect(paper.adjusted(-i - 1, -i, i, i + 1), i, i);
    }
    const QRect visible = exposed.translated(-sheet.topLeft()) & paper;
    if (!visible.isEmpty()) {
        painter.fillRect(visible, Qt::white);
        painter.setClipRect(visible);
        m_lastPaint.operations += m_painter.paint(painter, *m_document, page, m_layout.pixelsPerTwip(), visible);
        ++m_lastPaint.pages;
    }
    painter.restore();
}

void Preview::paintEmptyText(QPainter &painter)
{
    painter.setPen(quietTextColour(palette()));
    painter.drawText(
        viewport()->rect().marginsRemoved(QMargins(24, 24, 24, 24)), Qt::AlignCenter | Qt::TextWordWrap, m_emptyText);
}

void Preview::makeActions()
{
    for (size_t i = 0; i < kCommandCount; ++i) {
        const CommandText &command = kCommands[i];
        auto *made = new QAction(tr(command.text), this);
        made->setObjectName(QLatin1StringView(command.name));
        made->setShortcuts(shortcutsOf(command));
        made->setShortcutContext(command.context);
        made->setToolTip(
            QStringLiteral("%1 (%2)").arg(made->text(), made->shortcut().toString(QKeySequence::NativeText)));
        connect(made, &QAction::triggered, this, [this, i] { run(Command(i)); });
        addAction(made);
        m_actions[i] = made;
    }
    updateIcons();
    updateActions();
}

void Preview::updateIcons()
{
    for (size_t i = 0; i < kCommandCount; ++i)
        m_actions[i]->setIcon(icon(QLatin1StringView(kCommands[i].name), palette()));
}

void Preview::updateActions()
{
    const bool hasPages = pageCount() > 0;
    action(Command::FirstPage)->setEnabled(m_currentPage > 0);
    action(Command::PreviousPage)->setEnabled(m_currentPage > 0);
    action(Command::NextPage)->setEnabled(hasPages && m_currentPage < pageCount() - 1);
    action(Command::LastPage)->setEnabled(hasPages && m_currentPage < pageCount() - 1);
    action(Command::ZoomIn)->setEnabled(hasPages && m_zoomPercent < kMostZoom);
    action(Command::ZoomOut)->setEnabled(hasPages && m_zoomPercent > kLeastZoom);
    action(Command::ActualSize)->setEnabled(hasPages);
}

void Preview::run(Command command)
{
    switch (command) {
    case Command::FirstPage:
        return goToPage(0);
    case Command::PreviousPage:
        return goToPage(m_currentPage - 1);
    case Command::NextPage:
        return goToPage(m_currentPage + 1);
    case Command::LastPage:
        return goToPage(pageCount() - 1);
    case Command::ZoomIn:
        return zoomIn();
    case Command::ZoomOut:
        return zoomOut();
    case Command::ActualSize:
        return setZoomPercent(100);
    }
}

PageSet Preview::pages() const
{
    if (!m_document)
        return {};
    return {m_document->pageCount(), m_document->paperWidth, m_document->paperHeight};
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
    return std::clamp(scale / pixelsPerTwip(1), kLeastZoom, kMostZoom);
}

void Preview::zoomAround(double percent, QPointF viewportPoint)
{
    m_zoomMode = ZoomMode::Fixed;
    layOut(std::clamp(percent, kLeastZoom, kMostZoom), viewportPoint);
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

/// What of the content stands in the viewport's upper left corner; negative where pages are centred.
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

void Preview::scrollVertically(int pixels)
{
    verticalScrollBar()->setValue(verticalScrollBar()->value() + pixels);
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
    setAccessibleDescription(page < 0 ? QString() : tr("Page %1 of %2").arg(page + 1).arg(pageCount()));
    updateActions();
    Q_EMIT currentPageChanged(page);
}

void Preview::noteVisiblePage()
{
    const int top = verticalScrollBar()->value();
    setCurrentPage(m_layout.mostVisiblePage(top, top + viewport()->height()));
}

} // namespace corvane

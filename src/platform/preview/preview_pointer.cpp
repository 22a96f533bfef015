#include "platform/preview/preview_pointer.h"

#include "platform/preview/document_links.h"
#include "platform/preview/preview.h"

#include <QtGui/QGuiApplication>
#include <QtGui/QMouseEvent>
#include <QtGui/QStyleHints>
#include <QtWidgets/QApplication>
#include <QtWidgets/QGesture>

namespace corvane {

namespace {

constexpr int kScrollEveryMs = 30;
constexpr int kFastestScroll = 120; ///< pixels at once

/// How far a point lies outside, in pixels; negative above or left of it.
QPoint beyond(const QRect &view, QPoint point)
{
    const QPoint held(
        qBound(view.left(), point.x(), view.right()), qBound(view.top(), point.y(), view.bottom()));
    const QPoint out = point - held;
    return {qBound(-kFastestScroll, out.x(), kFastestScroll),
        qBound(-kFastestScroll, out.y(), kFastestScroll)};
}

bool isNear(QPoint a, QPoint b)
{
    return (a - b).manhattanLength() < QApplication::startDragDistance();
}

} // namespace

PreviewPointer::PreviewPointer(Preview *preview)
    : QObject(preview)
    , m_preview(preview)
{
    m_tripleClick.setSingleShot(true);
    m_scroll.setInterval(kScrollEveryMs);
    connect(&m_scroll, &QTimer::timeout, this, &PreviewPointer::scrollOnDrag);
    preview->viewport()->setMouseTracking(true);
    preview->viewport()->grabGesture(Qt::PinchGesture);
}

void PreviewPointer::press(const QMouseEvent &event)
{
    const QPoint at = event.position().toPoint();
    m_pressedLink.clear();
    if (m_preview->pageCount() == 0)
        return;
    if (event.button() == Qt::MiddleButton || (event.button() == Qt::LeftButton && m_handKey))
        return startHand(at);
    if (event.button() != Qt::LeftButton)
        return;
    const bool isTriple = m_tripleClick.isActive() && isNear(at, m_pressed);
    m_tripleClick.stop();
    m_pressed = at;
    m_pressedLink = linkTargetAt(event.position());
    startText(event, isTriple ? SelectBy::Line : SelectBy::Letter);
}

void PreviewPointer::doubleClick(const QMouseEvent &event)
{
    if (event.button() != Qt::LeftButton || m_handKey || m_preview->pageCount() == 0)
        return press(event);
    m_pressed = event.position().toPoint();
    m_tripleClick.start(QGuiApplication::styleHints()->mouseDoubleClickInterval());
    startText(event, SelectBy::Word);
}

void PreviewPointer::move(const QMouseEvent &event)
{
    const QPoint at = event.position().toPoint();
    switch (m_drag) {
    case Drag::None:
        return showCursor(event.position());
    case Drag::Hand:
        m_preview->scrollBy(m_last - at);
        m_last = at;
        return;
    case Drag::Text:
        m_last = at;
        if (!isNear(at, m_pressed))
            m_pressedLink.clear();
        extendTo(event.position());
        if (m_preview->viewport()->rect().contains(at))
            m_scroll.stop();
        else if (!m_scroll.isActive())
            m_scroll.start();
        return;
    }
}

void PreviewPointer::release(const QMouseEvent &event)
{
    m_drag = Drag::None;
    m_scroll.stop();
    showCursor(event.position());
    const QString link = std::exchange(m_pressedLink, QString());
    if (!link.isEmpty() && event.button() == Qt::LeftButton
        && linkTargetAt(event.position()) == link)
        m_preview->followLink(link);
}

void PreviewPointer::pinch(QGestureEvent &event)
{
    const auto *pinch = static_cast<const QPinchGesture *>(event.gesture(Qt::PinchGesture));
    if (!pinch || m_preview->pageCount() == 0)
        return;
    event.accept();
    const QPointF centre = m_preview->viewport()->mapFromGlobal(pinch->centerPoint());
    if (pinch->changeFlags().testFlag(QPinchGesture::ScaleFactorChanged))
        m_preview->zoomAround(m_preview->zoomPercent() * pinch->scaleFactor(), centre);
}

void PreviewPointer::pinch(QNativeGestureEvent &event)
{
    if (event.gestureType() != Qt::ZoomNativeGesture || m_preview->pageCount() == 0)
        return;
    event.accept();
    m_preview->zoomAround(m_preview->zoomPercent() * (1 + event.value()), event.position());
}

void PreviewPointer::reset()
{
    m_drag = Drag::None;
    m_scroll.stop();
    m_tripleClick.stop();
    m_pressedLink.clear();
    m_handKey = m_handUsed = false;
    m_preview->viewport()->unsetCursor();
}

void PreviewPointer::setHandKey(bool isDown)
{
    m_handKey = isDown;
    m_handUsed = false;
    if (m_drag == Drag::None)
        showCursor(m_preview->viewport()->mapFromGlobal(QPointF(QCursor::pos())));
}

QString PreviewPointer::linkTargetAt(QPointF viewportPoint) const
{
    const Preview::PaperPoint point = m_preview->paperPointAt(viewportPoint);
    if (point.page < 0)
        return {};
    const LinkArea *link = linkAt(m_preview->document()->pages[size_t(point.page)], point.at);
    return link ? link->target : QString();
}

void PreviewPointer::startText(const QMouseEvent &event, SelectBy by)
{
    m_drag = Drag::Text;
    m_last = event.position().toPoint();
    if (event.modifiers().testFlag(Qt::ShiftModifier) && m_preview->selection().isStarted())
        return extendTo(event.position());
    TextSelection selection;
    selection.start(*m_preview->document(), placeAt(event.position(), by), by);
    m_preview->setSelection(selection);
}

void PreviewPointer::startHand(QPoint at)
{
    m_drag = Drag::Hand;
    m_handUsed = true;
    m_last = at;
    m_preview->viewport()->setCursor(Qt::ClosedHandCursor);
}

void PreviewPointer::extendTo(QPointF viewportPoint)
{
    TextSelection selection = m_preview->selection();
    selection.extendTo(*m_preview->document(), placeAt(viewportPoint, selection.by()));
    m_preview->setSelection(selection);
}

void PreviewPointer::scrollOnDrag()
{
    m_preview->scrollBy(beyond(m_preview->viewport()->rect(), m_last));
    extendTo(m_last);
}

void PreviewPointer::showCursor(QPointF viewportPoint)
{
    const Preview::PaperPoint point = m_preview->paperPointAt(viewportPoint);
    Qt::CursorShape shape = Qt::ArrowCursor;
    if (m_handKey)
        shape = Qt::OpenHandCursor;
    else if (!linkTargetAt(viewportPoint).isEmpty())
        shape = Qt::PointingHandCursor;
    else if (point.page >= 0 && PageText(*m_preview->document(), point.page).hasLetterAt(point.at))
        shape = Qt::IBeamCursor;
    m_preview->viewport()->setCursor(shape);
}

LetterPlace PreviewPointer::placeAt(QPointF viewportPoint, SelectBy by) const
{
    const Preview::PaperPoint point = m_preview->paperPointAt(viewportPoint);
    const PageText text(*m_preview->document(), point.page);
    return {point.page, by == SelectBy::Letter ? text.offsetAt(point.at) : text.letterAt(point.at)};
}

} // namespace corvane

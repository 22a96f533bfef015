#pragma once

#include "platform/preview/text_selection.h"

#include <QtCore/QObject>
#include <QtCore/QPoint>
#include <QtCore/QTimer>

class QGestureEvent;
class QMouseEvent;
class QNativeGestureEvent;

namespace corvane {

class Preview;
struct LinkArea;

/// What mouse and fingers do on a preview's paper: select text, move the paper, follow links,
/// pinch.
class PreviewPointer : public QObject
{
    Q_OBJECT

public:
    explicit PreviewPointer(Preview *preview);

    void press(const QMouseEvent &event);
    void doubleClick(const QMouseEvent &event);
    void move(const QMouseEvent &event);
    void release(const QMouseEvent &event);
    void pinch(QGestureEvent &event);
    void pinch(QNativeGestureEvent &event);
    /// Forgets what is going on: the document changed or the focus went.
    void reset();

    /// While the key is down a drag moves the paper.
    void setHandKey(bool isDown);
    bool isHandKeyDown() const { return m_handKey; }
    /// Whether the paper was moved since the key went down.
    bool wasHandUsed() const { return m_handUsed; }

    /// The target of the link at a point of the viewport; empty: none.
    QString linkTargetAt(QPointF viewportPoint) const;

private:
    enum class Drag { None, Text, Hand };

    void startText(const QMouseEvent &event, SelectBy by);
    void startHand(QPoint at);
    void extendTo(QPointF viewportPoint);
    void scrollOnDrag();
    void showCursor(QPointF viewportPoint);
    LetterPlace placeAt(QPointF viewportPoint, SelectBy by) const;

    Preview *m_preview;
    Drag m_drag = Drag::None;
    QPoint m_last;
    QPoint m_pressed;
    QString m_pressedLink;
    bool m_handKey = false;
    bool m_handUsed = false;
    QTimer m_tripleClick; ///< runs as long as one more click makes a double click a triple one
    QTimer m_scroll; ///< runs while text is dragged beyond the view's edge
};

} // namespace corvane

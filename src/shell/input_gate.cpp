#include "shell/input_gate.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDeadlineTimer>
#include <QtGui/QKeyEvent>
#include <QtWidgets/QWidget>

namespace corvane {

namespace {

constexpr qint64 kServeEveryMs = 50;

bool isInput(QEvent::Type type)
{
    switch (type) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::Shortcut:
    case QEvent::ShortcutOverride:
    case QEvent::InputMethod:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::Wheel:
    case QEvent::ContextMenu:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::NativeGesture:
    case QEvent::DragEnter:
    case QEvent::Drop:
        return true;
    default:
        return false;
    }
}

} // namespace

InputGate::InputGate(QWidget *window, Clock clock)
    : QObject(window)
    , m_window(window)
    , m_clock(std::move(clock))
{
}

qint64 InputGate::steadyMilliseconds()
{
    return QDeadlineTimer::current().deadline();
}

void InputGate::close()
{
    if (std::exchange(m_closed, true))
        return;
    m_served = m_clock();
    QCoreApplication::instance()->installEventFilter(this);
}

void InputGate::open()
{
    if (std::exchange(m_closed, false))
        QCoreApplication::instance()->removeEventFilter(this);
}

void InputGate::serve()
{
    const qint64 now = m_clock();
    if (now - m_served < kServeEveryMs)
        return;
    m_served = now;
    QCoreApplication::processEvents();
}

bool InputGate::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Close && watched == m_window) {
        m_closeWish = true;
        event->ignore();
        return true;
    }
    if (!isInput(event->type()))
        return false;
    if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape)
        m_escape = true;
    return true;
}

} // namespace corvane

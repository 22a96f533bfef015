#include "platform/controls/date_picker.h"

#include "platform/controls/calendar_popup.h"

#include <QtGui/QKeyEvent>
#include <QtGui/QScreen>
#include <QtWidgets/QToolButton>

namespace corvane {

namespace {

constexpr int kArrowWidth = 22;
constexpr int kPopupGap = 2;

} // namespace

DatePicker::DatePicker(TodayFunction today, QWidget *parent)
    : DateField(parent)
    , m_today(std::move(today))
    , m_arrow(new QToolButton(this))
{
    setTextMargins(0, 0, kArrowWidth, 0);
    m_arrow->setObjectName(QStringLiteral("calendarArrow"));
    m_arrow->setAccessibleName(tr("Open the calendar"));
    m_arrow->setToolTip(tr("Calendar (Alt+Down)"));
    m_arrow->setArrowType(Qt::DownArrow);
    m_arrow->setAutoRaise(true);
    m_arrow->setFocusPolicy(Qt::NoFocus);
    m_arrow->setCursor(Qt::ArrowCursor);
    connect(m_arrow, &QToolButton::clicked, this, &DatePicker::openCalendar);
}

DatePicker::DatePicker(QWidget *parent)
    : DatePicker([] { return QDate::currentDate(); }, parent)
{
}

bool DatePicker::isCalendarOpen() const
{
    return m_popup && m_popup->isVisible();
}

void DatePicker::openCalendar()
{
    if (isReadOnly() || !isEnabled() || isCalendarOpen())
        return;
    if (!m_popup) {
        m_popup = new CalendarPopup(this);
        connect(m_popup, &CalendarPopup::chosen, this, &DatePicker::choose);
        connect(m_popup, &CalendarPopup::todayWanted, this, [this] { choose(m_today()); });
    }
    setFocus();
    m_popup->prepare(date().value_or(m_today()), m_today());
    const QSize size = m_popup->sizeHint();
    const QRect free = screen()->availableGeometry();
    QPoint at = mapToGlobal(QPoint(0, height() + kPopupGap));
    if (at.y() + size.height() > free.bottom())
        at.setY(mapToGlobal(QPoint()).y() - kPopupGap - size.height());
    at.setX(qBound(free.left(), at.x(), qMax(free.left(), free.right() - size.width())));
    m_popup->move(at);
    m_popup->show();
}

void DatePicker::closeCalendar()
{
    if (m_popup)
        m_popup->close();
}

void DatePicker::keyPressEvent(QKeyEvent *event)
{
    const bool altDown = event->key() == Qt::Key_Down && event->modifiers().testFlag(Qt::AltModifier);
    if (altDown || (event->key() == Qt::Key_F4 && event->modifiers() == Qt::NoModifier))
        openCalendar();
    else
        DateField::keyPressEvent(event);
}

void DatePicker::resizeEvent(QResizeEvent *event)
{
    DateField::resizeEvent(event);
    m_arrow->setGeometry(width() - kArrowWidth - 2, 2, kArrowWidth, height() - 4);
}

void DatePicker::choose(QDate date)
{
    setDate(date);
    closeCalendar();
}

} // namespace corvane

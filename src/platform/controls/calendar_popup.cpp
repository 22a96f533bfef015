#include "platform/controls/calendar_popup.h"

#include "platform/controls/icons.h"

#include <QtGui/QKeyEvent>
#include <QtGui/QTextCharFormat>
#include <QtWidgets/QCalendarWidget>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QToolButton>
#include <QtWidgets/QVBoxLayout>

namespace corvane {

namespace {

/// The line with month and year in the window's own colours and with the program's arrows. Its buttons
/// take their text colour from HighlightedText whatever stands behind them.
void calmNavigation(QCalendarWidget &calendar, const QPalette &palette)
{
    auto *line = calendar.findChild<QWidget *>(QStringLiteral("qt_calendar_navigationbar"));
    if (!line)
        return;
    QPalette calm = palette;
    calm.setColor(QPalette::HighlightedText, palette.color(QPalette::WindowText));
    line->setPalette(calm);
    line->setBackgroundRole(QPalette::Window);
    for (const auto &[name, drawing] :
        {std::pair(u"qt_calendar_prevmonth", u"previous"), std::pair(u"qt_calendar_nextmonth", u"next")}) {
        if (auto *button = line->findChild<QToolButton *>(QStringView(name).toString()))
            button->setIcon(icon(QStringView(drawing).toString(), palette));
    }
}

} // namespace

CalendarPopup::CalendarPopup(QWidget *parent)
    : QFrame(parent, Qt::Popup)
    , m_calendar(new QCalendarWidget(this))
{
    setObjectName(QStringLiteral("calendarPopup"));
    setAccessibleName(tr("Calendar"));
    setFrameShape(QFrame::StyledPanel);
    setAttribute(Qt::WA_NoMouseReplay); // a click on the arrow closes the calendar and does not open it again

    m_calendar->setObjectName(QStringLiteral("calendar"));
    m_calendar->setAccessibleName(tr("Calendar"));
    m_calendar->setVerticalHeaderFormat(QCalendarWidget::NoVerticalHeader);
    m_calendar->setHorizontalHeaderFormat(QCalendarWidget::ShortDayNames);
    m_calendar->setFirstDayOfWeek(locale().firstDayOfWeek());
    auto *today = new QPushButton(tr("&Today"), this);
    today->setObjectName(QStringLiteral("today"));
    today->setAutoDefault(false);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_calendar);
    layout->addWidget(today);
    setFocusProxy(m_calendar);

    connect(m_calendar, &QCalendarWidget::clicked, this, &CalendarPopup::chosen);
    connect(m_calendar, &QCalendarWidget::activated, this, &CalendarPopup::chosen);
    connect(today, &QPushButton::clicked, this, &CalendarPopup::todayWanted);
}

void CalendarPopup::prepare(QDate selected, QDate today)
{
    calmNavigation(*m_calendar, palette());
    QTextCharFormat weekend;
    weekend.setForeground(palette().color(QPalette::Text));
    m_calendar->setWeekdayTextFormat(Qt::Saturday, weekend);
    m_calendar->setWeekdayTextFormat(Qt::Sunday, weekend);
    QTextCharFormat marked;
    marked.setFontWeight(QFont::Bold);
    marked.setFontUnderline(true);
    m_calendar->setDateTextFormat(QDate(), {});
    m_calendar->setDateTextFormat(today, marked);
    m_calendar->setSelectedDate(selected);
    m_calendar->showSelectedDate();
}

void CalendarPopup::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_F4)
        close();
    else
        QFrame::keyPressEvent(event);
}

void CalendarPopup::showEvent(QShowEvent *event)
{
    QFrame::showEvent(event);
    m_calendar->setFocus();
}

} // namespace corvane

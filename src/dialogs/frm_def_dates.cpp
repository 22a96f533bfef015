#include "dialogs/frm_def_dates.h"

#include "platform/controls/control_names.h"
#include "platform/controls/date_picker.h"
#include "shared/calendar_range.h"
#include "shared/date_range.h"

#include <QtGui/QKeyEvent>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QMenu>
#include <QtWidgets/QPushButton>

namespace corvane {

namespace {

constexpr int kFirstRealDay = 2; // a day number below it means that no date is entered

/// In the order of kCalendarRanges.
constexpr std::array<const char *, kCalendarRanges.size()> kRangeCaptions {
    QT_TRANSLATE_NOOP("frmDefDates", "&Today"),
    QT_TRANSLATE_NOOP("frmDefDates", "&Yesterday"),
    QT_TRANSLATE_NOOP("frmDefDates", "This &week"),
    QT_TRANSLATE_NOOP("frmDefDates", "Last w&eek"),
    QT_TRANSLATE_NOOP("frmDefDates", "This &month"),
    QT_TRANSLATE_NOOP("frmDefDates", "Last m&onth"),
    QT_TRANSLATE_NOOP("frmDefDates", "This &quarter"),
    QT_TRANSLATE_NOOP("frmDefDates", "Last q&uarter"),
    QT_TRANSLATE_NOOP("frmDefDates", "Th&is year"),
    QT_TRANSLATE_NOOP("frmDefDates", "&Last year"),
};

} // namespace

frmDefDates::frmDefDates(ReportHost &host, MessageBoxes &boxes, int dateOrder, const std::function<QDate()> &today, QWidget *parent)
    : QDialog(parent)
    , m_host(host)
    , m_boxes(boxes)
    , m_today(today)
    , Label1(new QLabel(tr("Dates"), this))
    , DateFrom(new DatePicker(today, this))
    , Label2(new QLabel(tr("to"), this))
    , DateTo(new DatePicker(today, this))
    , cmdrange(new QPushButton(tr("&Range"), this))
    , Command1(new QPushButton(tr("Ok"), this))
    , cmdcancel(new QPushButton(tr("&Cancel"), this))
{
    setWindowTitle(tr("Report Dates"));
    setObjectName(QStringLiteral("frmDefDates"));
    buildForm(dateOrder);
    buildRanges();
    if (const auto from = host.dateFrom().date)
        DateFrom->setDate(*from);
    if (const auto to = host.dateTo().date)
        DateTo->setDate(*to);
    connect(DateFrom, &DateField::changed, this, &frmDefDates::dates_Change);
    connect(DateTo, &DateField::changed, this, &frmDefDates::dates_Change);
    connect(Command1, &QPushButton::clicked, this, &frmDefDates::Command1_Click);
    connect(cmdcancel, &QPushButton::clicked, this, &QDialog::reject);
    dates_Change();
}

void frmDefDates::buildForm(int dateOrder)
{
    nameControl(DateFrom, QStringLiteral("DateFrom"), tr("Start date"));
    nameControl(DateTo, QStringLiteral("DateTo"), tr("End date"));
    nameControl(cmdrange, QStringLiteral("cmdrange"), tr("Calendar range"));
    nameControl(Command1, QStringLiteral("Command1"), tr("Ok"));
    nameControl(cmdcancel, QStringLiteral("cmdcancel"), tr("Cancel"));
    DateFrom->setDateOrder(dateOrder);
    DateTo->setDateOrder(dateOrder);
    QFont heading = Label1->font();
    heading.setBold(true);
    Label1->setFont(heading);
    Command1->setDefault(true);

    auto *dates = new QHBoxLayout;
    dates->addWidget(DateFrom);
    dates->addWidget(Label2);
    dates->addWidget(DateTo);
    dates->addWidget(cmdrange);
    dates->addStretch();
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(Command1);
    buttons->addWidget(cmdcancel);
    auto *form = new QVBoxLayout(this);
    form->addWidget(Label1);
    form->addLayout(dates);
    form->addSpacing(form->spacing());
    form->addLayout(buttons);
    form->setSizeConstraint(QLayout::SetFixedSize);
    setTabOrder(DateFrom, DateTo);
    setTabOrder(DateTo, cmdrange);
    setTabOrder(cmdrange, Command1);
    setTabOrder(Command1, cmdcancel);
}

void frmDefDates::buildRanges()
{
    auto *menu = new QMenu(cmdrange);
    for (size_t i = 0; i < kCalendarRanges.size(); ++i) {
        if (i > 0 && i % 2 == 0)
            menu->addSeparator();
        menu->addAction(tr(kRangeCaptions[i]), this, [this, range = kCalendarRanges[i]] { fillDates(range); });
    }
    cmdrange->setToolTip(tr("Fill both dates with a day, week, month, quarter or year"));
    cmdrange->setAutoDefault(false); // Enter still accepts the dates after a range was chosen
    cmdrange->setMenu(menu);
    cmdrange->installEventFilter(this);
}

/// The arrow keys open the menu instead of leaving the button.
bool frmDefDates::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == cmdrange && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Down || key == Qt::Key_Up || key == Qt::Key_F4) {
            cmdrange->showMenu();
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

void frmDefDates::fillDates(CalendarRange range)
{
    const DaySpan span = calendarRange(range, m_today(), locale().firstDayOfWeek());
    DateFrom->setDate(span.first);
    DateTo->setDate(span.last);
}

void frmDefDates::dates_Change()
{
    Command1->setEnabled(DateFrom->dayNumber() >= kFirstRealDay && DateTo->dayNumber() >= kFirstRealDay);
}

void frmDefDates::Command1_Click()
{
    if (!isInOrder(DateFrom->dayNumber(), DateTo->dayNumber())) {
        m_boxes.message(kDateOrderMessage, MessageFlags::Exclamation, QStringLiteral("Corvane"));
        DateFrom->setFocus();
        return;
    }
    m_host.setDates(*DateFrom->date(), *DateTo->date());
    accept();
}

} // namespace corvane

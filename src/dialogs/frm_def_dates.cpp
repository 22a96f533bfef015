#include "dialogs/frm_def_dates.h"

#include "platform/controls/control_names.h"
#include "platform/controls/date_picker.h"
#include "shared/date_range.h"

#include <QtWidgets/QGridLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>

namespace corvane {

namespace {

constexpr int kFirstRealDay = 2; // a day number below it means that no date is entered

} // namespace

frmDefDates::frmDefDates(ReportHost &host, MessageBoxes &boxes, int dateOrder, std::function<QDate()> today, QWidget *parent)
    : QDialog(parent)
    , m_host(host)
    , m_boxes(boxes)
    , Label1(new QLabel(tr("Dates"), this))
    , DateFrom(new DatePicker(today, this))
    , Label2(new QLabel(tr("to"), this))
    , DateTo(new DatePicker(today, this))
    , Command1(new QPushButton(tr("Ok"), this))
    , cmdcancel(new QPushButton(tr("&Cancel"), this))
{
    setWindowTitle(tr("Report Dates"));
    setObjectName(QStringLiteral("frmDefDates"));
    buildForm(dateOrder);
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
    setTabOrder(DateTo, Command1);
    setTabOrder(Command1, cmdcancel);
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

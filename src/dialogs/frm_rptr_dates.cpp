#include "dialogs/frm_rptr_dates.h"

#include "platform/controls/control_names.h"
#include "platform/controls/date_picker.h"
#include "platform/messages/message_boxes.h"

#include <QtWidgets/QGridLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>

namespace corvane {

namespace {

constexpr int kTextWidth = 44; // of the free text, in digits; longer texts wrap
constexpr int kCaptionWidth = 12; // of the captions, at least

/// Texts come from a definition: plain, in lines, never cut.
QLabel *wrappingLabel(const QString &text, QWidget *parent)
{
    auto *label = new QLabel(text, parent);
    QFont font = label->font();
    font.setFamily(QStringLiteral("Arial"));
    label->setFont(font);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

void setDigits(QLabel *label, int digits)
{
    label->setMinimumWidth(digits * label->fontMetrics().horizontalAdvance(u'0'));
}

} // namespace

frmRptrDates::frmRptrDates(std::optional<DateParamTable> &table, MessageBoxes &boxes, int dateOrder,
    std::function<QDate()> today, QWidget *parent)
    : QDialog(parent)
    , m_table(table)
    , m_boxes(boxes)
    , m_today(std::move(today))
    , lbDynamic(wrappingLabel(tr("<dynamic label value>"), this))
    , lbFldCaption{wrappingLabel(tr("From Date:"), this), wrappingLabel(tr("To Date:"), this)}
    , DateCntl{new DatePicker(m_today, this), new DatePicker(m_today, this)}
    , Command1(new QPushButton(tr("&OK"), this))
    , cmdcancel(new QPushButton(tr("&Cancel"), this))
{
    setWindowTitle(tr("Report Date Parameter(s)"));
    setObjectName(QStringLiteral("frmRptrDates"));
    buildForm(dateOrder);
    for (const DatePicker *picker : DateCntl)
        connect(picker, &DateField::changed, this, &frmRptrDates::DateCntl_Change);
    connect(Command1, &QPushButton::clicked, this, &frmRptrDates::Command1_Click);
    connect(cmdcancel, &QPushButton::clicked, this, &frmRptrDates::reject);
}

void frmRptrDates::buildForm(int dateOrder)
{
    nameControl(lbDynamic, QStringLiteral("lbDynamic0"), lbDynamic->text());
    for (size_t i = 0; i < 2; ++i) {
        nameControl(
            lbFldCaption[i], QStringLiteral("lbFldCaption%1").arg(i), lbFldCaption[i]->text());
        nameControl(DateCntl[i], QStringLiteral("DateCntl%1").arg(i), lbFldCaption[i]->text());
        DateCntl[i]->setDateOrder(dateOrder);
    }
    nameControl(Command1, QStringLiteral("Command1"), tr("OK"));
    nameControl(cmdcancel, QStringLiteral("cmdcancel"), tr("Cancel"));
    Command1->setDefault(true);

    auto *form = new QVBoxLayout(this);
    form->addWidget(lbDynamic);
    form->addLayout(layOutDates());
    form->addSpacing(form->spacing());
    form->addLayout(layOutButtons());
    form->setSizeConstraint(QLayout::SetFixedSize);
    setDigits(lbDynamic, kTextWidth);
    setTabOrder(DateCntl[0], DateCntl[1]);
    setTabOrder(DateCntl[1], Command1);
    setTabOrder(Command1, cmdcancel);
}

QGridLayout *frmRptrDates::layOutDates()
{
    auto *dates = new QGridLayout;
    for (size_t i = 0; i < 2; ++i) {
        setDigits(lbFldCaption[i], kCaptionWidth);
        dates->addWidget(lbFldCaption[i], int(i), 0);
        dates->addWidget(DateCntl[i], int(i), 1, Qt::AlignLeft | Qt::AlignVCenter);
    }
    // One date leaves the place of the second one free: the buttons stand where they always stand.
    QSizePolicy kept = DateCntl[1]->sizePolicy();
    kept.setRetainSizeWhenHidden(true);
    DateCntl[1]->setSizePolicy(kept);
    dates->setColumnStretch(1, 1);
    return dates;
}

QBoxLayout *frmRptrDates::layOutButtons()
{
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(Command1);
    buttons->addWidget(cmdcancel);
    return buttons;
}

void frmRptrDates::Form_Load()
{
    m_table.reset();
    ResultSQL.clear();
    m_token = DateToken::parseRequest(RequestSQL);
    Reconfigure_Form();
}

void frmRptrDates::Reconfigure_Form()
{
    lbDynamic->setText(m_token.label);
    lbDynamic->setAccessibleName(m_token.label);
    const DateAnswers defaults = defaultAnswers(m_token, DateCntl[0]->dateOrder(), m_today());
    // Deliberate: the second default is set even when its picker stays hidden; "{DATE*2}" takes it
    // from there.
    DateCntl[0]->setDate(defaults.first.value_or(QDate()));
    DateCntl[1]->setDate(defaults.second.value_or(QDate()));
    for (size_t i = 0; i < 2; ++i) {
        const bool isAsked = i == 0 || m_token.asksForTwo();
        lbFldCaption[i]->setText(m_token.captions[i]);
        lbFldCaption[i]->setAccessibleName(m_token.captions[i]);
        lbFldCaption[i]->setVisible(isAsked);
        DateCntl[i]->setAccessibleName(m_token.captions[i]);
        DateCntl[i]->setVisible(isAsked);
    }
    DateCntl_Change();
}

DateAnswers frmRptrDates::answers() const
{
    return {DateCntl[0]->date(), DateCntl[1]->date()};
}

void frmRptrDates::DateCntl_Change()
{
    Command1->setEnabled(isAnswered(m_token, answers()));
}

void frmRptrDates::Command1_Click()
{
    if (const auto fault = orderFault(m_token, answers())) {
        m_boxes.message(*fault, MessageFlags::Exclamation, QStringLiteral("Corvane"));
        DateCntl[0]->setFocus();
        return;
    }
    applyDates();
    accept();
}

void frmRptrDates::applyDates()
{
    const DateOrder order = DateCntl[0]->dateOrder();
    ResultSQL = corvane::applyDates(RequestSQL, answers(), order);
    m_table = dateParamTable(answers(), order);
}

void frmRptrDates::reject()
{
    ResultSQL.clear();
    QDialog::reject();
}

} // namespace corvane

#include "dialogs/frmspatnt.h"

#include "platform/controls/control_names.h"
#include "platform/controls/flood_panel.h"
#include "platform/controls/quiet_label.h"
#include "platform/controls/record_list.h"
#include "platform/controls/record_model.h"
#include "platform/controls/spacing.h"
#include "platform/database/error.h"
#include "platform/messages/message_boxes.h"
#include "shared/reportr.h"

#include <QtGui/QKeyEvent>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QGridLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>

#include <array>

namespace corvane {

namespace {

constexpr int kFormLetters = 103; ///< width to begin with
constexpr int kFormLines = 28;    ///< height to begin with

} // namespace

frmspatnt::frmspatnt(Reportr &state, MessageBoxes &boxes, QWidget *parent)
    : QDialog(parent)
    , m_state(state)
    , m_boxes(boxes)
    , m_database(state)
    , Label1(new QLabel(tr("Search:"), this))
    , cbosearch(new QComboBox(this))
    , Label2(new QLabel(tr("Starts with:"), this))
    , txtsearch(new QLineEdit(this))
    , cmdsearch(new QPushButton(tr("Search"), this))
    , Label3(new QuietLabel(tr("Enter a '%' to list all patients"), this))
    , ctList1(new RecordList(this))
    , lblIncomplete(new QLabel(this))
    , pnlcount(new QLabel(tr("0 Records"), this))
    , pnlprogress(new FloodPanel(this))
    , cmdselect(new QPushButton(tr("&Select"), this))
    , cmdcancel(new QPushButton(tr("&Cancel"), this))
{
    setObjectName(QStringLiteral("frmspatnt"));
    setWindowTitle(tr("Select Patient"));
    buildForm();
    connect(cbosearch, &QComboBox::currentIndexChanged, this, &frmspatnt::cbosearch_Click);
    connect(txtsearch, &QLineEdit::textChanged, this, &frmspatnt::txtsearch_Change);
    connect(cmdsearch, &QPushButton::clicked, this, &frmspatnt::cmdsearch_Click);
    connect(ctList1, &RecordList::accepted, this, &frmspatnt::cmdselect_Click);
    connect(cmdselect, &QPushButton::clicked, this, &frmspatnt::cmdselect_Click);
    connect(cmdcancel, &QPushButton::clicked, this, &frmspatnt::reject);
    Form_Load();
}

void frmspatnt::Form_Load()
{
    m_state.gPatientID.clear();
    m_state.gPatientText.clear();
    cbosearch->setCurrentIndex(0);
    cbosearch_Click();
    txtsearch_Change();
    loading = false;
}

void frmspatnt::buildForm()
{
    cbosearch->addItems({tr("Last Name"), tr("First Name"), tr("Account Number"), tr("Social Security Number")});
    nameControl(cbosearch, QStringLiteral("cbosearch"), tr("Search by"));
    nameControl(txtsearch, QStringLiteral("txtsearch"), tr("Starts with"));
    nameControl(cmdsearch, QStringLiteral("cmdsearch"), tr("Search"));
    nameControl(ctList1, QStringLiteral("ctList1"), tr("Patients"));
    nameControl(lblIncomplete, QStringLiteral("lblIncomplete"), tr("Why the list is incomplete"));
    nameControl(pnlcount, QStringLiteral("pnlcount"), tr("Number of patients"));
    nameControl(pnlprogress, QStringLiteral("pnlprogress"), tr("Progress"));
    nameControl(cmdselect, QStringLiteral("cmdselect"), tr("Select"));
    nameControl(cmdcancel, QStringLiteral("cmdcancel"), tr("Cancel"));
    ctList1->model().setColumns({tr("Patient"), tr("Account"), tr("SSN")}, false);
    lblIncomplete->setTextFormat(Qt::PlainText);
    lblIncomplete->setWordWrap(true);
    lblIncomplete->hide();
    for (QLabel *label : {Label1, Label2, Label3}) {
        QFont font = label->font();
        font.setFamily(QStringLiteral("Arial"));
        label->setFont(font);
    }
    Label1->setBuddy(cbosearch);
    Label2->setBuddy(txtsearch);
    cmdselect->setAutoDefault(false);
    cmdcancel->setAutoDefault(false);
    cmdsearch->setAutoDefault(false);
    txtsearch->installEventFilter(this);

    auto *search = new QHBoxLayout;
    for (QWidget *part : std::array<QWidget *, 4> {Label1, cbosearch, Label2, txtsearch})
        search->addWidget(part, part == txtsearch ? 1 : 0);
    search->addWidget(cmdsearch);
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(pnlcount);
    buttons->addWidget(pnlprogress, 1);
    buttons->addWidget(cmdselect);
    buttons->addWidget(cmdcancel);
    auto *form = new QVBoxLayout(this);
    form->addLayout(search);
    form->addWidget(Label3);
    form->addWidget(ctList1, 1);
    form->addWidget(lblIncomplete);
    form->addLayout(buttons);
    resize(lettersWide(this, kFormLetters), linesHigh(this, kFormLines));
    for (const auto &[first, second] : {std::pair<QWidget *, QWidget *> {cbosearch, txtsearch}, {txtsearch, cmdsearch},
             {cmdsearch, ctList1}, {ctList1, cmdselect}, {cmdselect, cmdcancel}})
        setTabOrder(first, second);
    txtsearch->setFocus();
}

bool frmspatnt::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == txtsearch && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            cmdsearch_Click();
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

void frmspatnt::cbosearch_Click()
{
    txtsearch->clear();
    if (!loading)
        txtsearch->setFocus();
}

void frmspatnt::txtsearch_Change()
{
    cmdsearch->setEnabled(!txtsearch->text().isEmpty());
}

void frmspatnt::cmdsearch_Click()
{
    setCursor(Qt::WaitCursor);
    if (const auto sql = patientQuery(cbosearch->currentIndex(), txtsearch->text(), m_state.gAccessType, m_state.gUserID))
        loadpatients(*sql);
    unsetCursor();
}

void frmspatnt::loadpatients(const QString &sql)
{
    RecordModel &list = ctList1->model();
    list.clear();
    QString fault;
    try {
        PatientReader reader(m_database.open(sql));
        fillList(reader);
    } catch (const DatabaseError &error) {
        fault = error.description();
    }
    pnlprogress->setFloodPercent(0);
    lblIncomplete->setText(tr("The list is incomplete. Search again, or type more letters. Cause: %1").arg(fault));
    lblIncomplete->setVisible(!fault.isEmpty());
    pnlcount->setText(QString::number(list.rowCount()) + tr(" Records      "));
    if (!loading && list.rowCount() == 0 && fault.isEmpty())
        m_boxes.message(tr("No records found for search criteria. Try another."), MessageFlags::OkOnly, {});
}

void frmspatnt::fillList(PatientReader &reader)
{
    RecordModel &list = ctList1->model();
    const qsizetype count = reader.count();
    list.beginFill();
    for (qsizetype row = 0; row < count; ++row) {
        const PatientRow &patient = reader.read(row);
        const std::array<QStringView, 3> columns {patient.name, patient.account, patient.ssn};
        list.add(columns, patient.id);
        if (const int percent = int((row + 1) * 100 / count); percent != pnlprogress->floodPercent())
            pnlprogress->setFloodPercent(percent);
    }
    list.endFill();
}

void frmspatnt::cmdselect_Click()
{
    const int row = ctList1->currentRow();
    if (row < 0)
        return;
    m_state.gPatientID = ctList1->model().hidden(row);
    m_state.gPatientText = ctList1->model().text(row, 0);
    accept();
}

void frmspatnt::reject()
{
    m_state.gPatientID.clear();
    QDialog::reject();
}

} // namespace corvane

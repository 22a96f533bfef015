#include "dialogs/frm_rptr_select.h"

#include "definitions/selection_token_list.h"
#include "platform/controls/control_names.h"
#include "platform/controls/flood_panel.h"
#include "platform/controls/record_list.h"
#include "platform/controls/spacing.h"
#include "platform/messages/message_boxes.h"

#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>

namespace corvane {

namespace {

constexpr int kListLetters = 60; ///< smallest width of the list
constexpr int kListLines = 7;    ///< smallest height of the list
constexpr int kFormLetters = 80; ///< width to begin with
constexpr int kFormLines = 20;   ///< height to begin with

} // namespace

frmRptrSelect::frmRptrSelect(Connection &gConn, MessageBoxes &boxes, const ValueTextStyle &style, QWidget *parent)
    : QDialog(parent)
    , m_gConn(gConn)
    , m_boxes(boxes)
    , m_style(style)
    , lblAction(new QLabel(this))
    , ctList1(new RecordList(this))
    , Command1 {new QPushButton(tr("Select ALL"), this), new QPushButton(tr("Inverse Selection"), this),
          new QPushButton(tr("Clear Selected"), this)}
    , pnlcount(new QLabel(tr("0 Records"), this))
    , pnlprogress(new FloodPanel(this))
    , lblIncomplete(new QLabel(this))
    , cmdselect(new QPushButton(tr("&OK"), this))
    , cmdcancel(new QPushButton(tr("&Cancel"), this))
{
    setWindowTitle(tr("Report Selection"));
    setObjectName(QStringLiteral("frmRptrSelect"));
    nameControls();
    buildForm();
    for (int index = 0; index < MarkButtonCount; ++index)
        connect(Command1[size_t(index)], &QPushButton::clicked, this, [this, index] { Command1_Click(index); });
    connect(ctList1, &RecordList::accepted, this, &frmRptrSelect::ctList1_Accepted);
    connect(cmdselect, &QPushButton::clicked, this, &frmRptrSelect::cmdselect_Click);
    connect(cmdcancel, &QPushButton::clicked, this, &QDialog::reject);
}

void frmRptrSelect::nameControls()
{
    nameControl(lblAction, QStringLiteral("lblAction"), tr("Instruction"));
    nameControl(ctList1, QStringLiteral("ctList1"), tr("Records to choose from"));
    nameControl(Command1[SelectAll], QStringLiteral("Command1_0"), tr("Select all"));
    nameControl(Command1[Inverse], QStringLiteral("Command1_1"), tr("Inverse selection"));
    nameControl(Command1[Clear], QStringLiteral("Command1_2"), tr("Clear selected"));
    nameControl(pnlcount, QStringLiteral("pnlcount"), tr("Number of records"));
    nameControl(pnlprogress, QStringLiteral("pnlprogress"), tr("Progress"));
    nameControl(lblIncomplete, QStringLiteral("lblIncomplete"), tr("Incomplete list"));
    nameControl(cmdselect, QStringLiteral("cmdselect"), tr("OK"));
    nameControl(cmdcancel, QStringLiteral("cmdcancel"), tr("Cancel"));
}

void frmRptrSelect::buildForm()
{
    for (QLabel *label : {lblAction, pnlcount, lblIncomplete})
        label->setTextFormat(Qt::PlainText);
    lblAction->setWordWrap(true);
    lblIncomplete->setWordWrap(true);
    lblIncomplete->hide();
    ctList1->setMinimumSize(lettersWide(this, kListLetters), linesHigh(this, kListLines)); // it gives way when the line below it grows
    ctList1->setHeaderHidden(true); // a column's name in the database says nothing to who chooses
    for (QPushButton *button : Command1)
        button->setAutoDefault(false);
    cmdselect->setDefault(true);

    auto *marks = new QVBoxLayout;
    for (QPushButton *button : Command1)
        marks->addWidget(button);
    marks->addStretch();
    auto *rows = new QHBoxLayout;
    rows->addWidget(ctList1, 1);
    rows->addLayout(marks);
    auto *progress = new QHBoxLayout;
    progress->addWidget(pnlcount);
    progress->addWidget(pnlprogress, 1);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdselect);
    buttons->addWidget(cmdcancel);
    auto *form = new QVBoxLayout(this);
    form->addWidget(lblAction);
    form->addLayout(rows, 1);
    form->addLayout(progress);
    form->addWidget(lblIncomplete);
    form->addLayout(buttons);
    resize(lettersWide(this, kFormLetters), linesHigh(this, kFormLines));
    ctList1->setFocus();
}

void frmRptrSelect::load()
{
    SelectParamTable.clear();
    ResultSQL.clear();
    m_answers = {};
    m_token = SelectionToken::parseRequest(RequestSQL);
    LoadControls();
}

void frmRptrSelect::LoadControls()
{
    ctList1->model().clear();
    const RowsetPtr rows = openSelectionList(m_gConn, m_token);
    m_gConn.forgetResult(); // the list has its own copy; a large result is not held twice
    RecordModel &list = ctList1->model();
    list.setColumns({rows->fieldNames().value(0)}, m_token.takesSeveral());
    list.beginFill();
    const auto add = [&list](QStringView display, QStringView value) { list.add({&display, 1}, value); };
    m_incomplete = fillSelection(*rows, m_style, add, [this](int percent) { pnlprogress->setFloodPercent(percent); });
    list.endFill();

    // Deliberate: the buttons follow changes of the marks only, so OK starts enabled with nothing marked.
    if (m_token.takesSeveral())
        connect(&list, &RecordModel::marksChanged, this, &frmRptrSelect::marks_Change, Qt::UniqueConnection);
    else
        connect(ctList1, &RecordList::currentRowChanged, this, &frmRptrSelect::marks_Change, Qt::UniqueConnection);
    Command1[SelectAll]->setEnabled(m_token.takesSeveral());
    Command1[Inverse]->setEnabled(m_token.takesSeveral());
    pnlprogress->setFloodPercent(0);
    pnlcount->setText(tr("%1 Records      ").arg(list.rowCount()));
    lblAction->setText(m_token.instruction());
    if (!m_incomplete.isEmpty())
        showFault(tr("The list is incomplete. Choose from the records shown, or cancel and run the report again. "
                     "Cause: %1").arg(m_incomplete));
    else if (list.rowCount() == 0)
        m_boxes.message(tr("No records found for search criteria. Try another."), MessageFlags::OkOnly, {});
}

void frmRptrSelect::showFault(const QString &fault)
{
    lblIncomplete->setText(fault);
    lblIncomplete->show();
}

void frmRptrSelect::ctList1_Accepted(int row)
{
    // Accepting a row while none is marked means that row, not "nothing".
    if (m_token.takesSeveral() && ctList1->model().markedCount() == 0)
        ctList1->model().setMarked(row, true);
    cmdselect->click();
}

void frmRptrSelect::marks_Change()
{
    const bool any = m_token.takesSeveral() ? ctList1->model().markedCount() > 0 : ctList1->currentRow() >= 0;
    cmdselect->setEnabled(any);
}

void frmRptrSelect::Command1_Click(int index)
{
    if (index == Inverse)
        ctList1->model().invertMarks();
    else if (m_token.takesSeveral())
        ctList1->model().markAll(index == SelectAll);
    else {
        ctList1->clearSelection();
        marks_Change();
    }
}

void frmRptrSelect::cmdselect_Click()
{
    const SelectionAnswers answers = chosen();
    const QString refusal = selectionRefusal(m_token, answers, m_incomplete);
    if (!refusal.isEmpty()) {
        showFault(refusal);
        ctList1->setFocus();
        return;
    }
    const SelectionResult result = applySelection(RequestSQL, m_token, answers);
    m_answers = answers;
    ResultSQL = result.sql;
    SelectParamTable = result.table;
    accept();
}

SelectionAnswers frmRptrSelect::chosen() const
{
    SelectionAnswers answers {m_token.marker(), {}};
    const RecordModel &list = ctList1->model();
    if (!m_token.takesSeveral()) {
        if (ctList1->currentRow() >= 0)
            answers.values += list.hidden(ctList1->currentRow());
        return answers;
    }
    for (int row = 0; row < list.rowCount(); ++row) {
        if (list.isMarked(row))
            answers.values += list.hidden(row);
    }
    answers.all = list.rowCount() > 0 && list.markedCount() == list.rowCount();
    return answers;
}

} // namespace corvane

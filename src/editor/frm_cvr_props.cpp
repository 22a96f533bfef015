#include "editor/frm_cvr_props.h"

#include "editor/column_model.h"
#include "editor/column_ruler.h"
#include "platform/controls/tool_tip.h"
#include "platform/messages/message_boxes.h"
#include "shared/numbers.h"
#include "shared/run_time_fault.h"

#include <QtCore/QFileInfo>
#include <QtGui/QKeyEvent>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QFontDialog>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPlainTextEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QTreeView>

namespace corvane {

frmCVRProps::frmCVRProps(const QString &gRptFile, MessageBoxes &boxes, QWidget *parent)
    : QDialog(parent)
    , m_definition(gRptFile)
    , m_boxes(boxes)
    , m_columns(new ColumnModel(this))
    , cboHeader{new QComboBox(this), new QComboBox(this), new QComboBox(this)}
    , cbofooter{new QComboBox(this), new QComboBox(this), new QComboBox(this)}
    , cboorient(new QComboBox(this))
    , ckPageBreak(new QCheckBox(tr("Page Break on Groups"), this))
    , ctList1(new QTreeView(this))
    , txtcolsize(new QLineEdit(this))
    , m_ruler(new ColumnRuler(this))
    , lblTotal(new QLabel(this))
    , txtsql(new QPlainTextEdit(this))
    , lblload(new QLabel(this))
    , lblfin(new QLabel(this))
    , lblFont(new QLabel(QStringLiteral("Arial;10"), this))
    , Command1(new QPushButton(tr("Update"), this))
    , Command2(new QPushButton(tr("Up"), this))
    , Command3(new QPushButton(tr("Down"), this))
    , Command4(new QPushButton(tr("Font..."), this))
    , Command5(new QPushButton(tr("Ok"), this))
    , Command6(new QPushButton(tr("Cancel"), this))
    , txtproblems(new QPlainTextEdit(this))
{
    setObjectName(QStringLiteral("frmCVRProps"));
    setWindowTitle(tr("Report Properties"));
    nameControls();
    buildForm();
    connectControls();
}

/// While the form's controls go, a caption that is being edited is still stored and the selection
/// changes; the form is no longer there to see it.
frmCVRProps::~frmCVRProps()
{
    m_columns->disconnect(this);
    ctList1->selectionModel()->disconnect(this);
}

bool frmCVRProps::Form_Load()
{
    prefillTexts();
    return loadDefinition();
}

bool frmCVRProps::loadDefinition()
{
    QString refusal = editRefusal(m_definition.file());
    try {
        if (refusal.isEmpty())
            showProperties(m_definition.load());
    } catch (const RunTimeFault &fault) {
        refusal = tr(
            "The properties of \"%1\" cannot be shown: %2. Mend the definition in a text editor.")
                      .arg(QFileInfo(m_definition.file()).fileName(), fault.description());
    }
    if (!refusal.isEmpty())
        m_boxes.message(refusal, MessageFlags::Information, windowTitle());
    return refusal.isEmpty();
}

void frmCVRProps::showProperties(const PageProperties &properties)
{
    for (size_t side = 0; side < cboHeader.size(); ++side) {
        cboHeader[side]->setEditText(properties.header[side]);
        cbofooter[side]->setEditText(properties.footer[side]);
    }
    txtsql->setPlainText(properties.recordSource);
    txtsql->setReadOnly(true);
    lblload->setText(properties.fields);
    lblload->setToolTip(plainToolTip(properties.fields));
    m_columns->setColumns(properties.columns);
    cboorient->setCurrentIndex(properties.isLandscape ? 1 : 0);
    ckPageBreak->setChecked(properties.breaksPageOnGroup);
    if (properties.columns.empty())
        ctList1_Click();
    else
        selectRow(0);
}

void frmCVRProps::setProblems(const QStringList &findings)
{
    txtproblems->setPlainText(findings.join(u'\n'));
    m_problemStrip->setVisible(!findings.isEmpty());
}

PageProperties frmCVRProps::collected() const
{
    PageProperties properties;
    for (size_t side = 0; side < cboHeader.size(); ++side) {
        properties.header[side] = cboHeader[side]->currentText();
        properties.footer[side] = cbofooter[side]->currentText();
    }
    properties.isLandscape = cboorient->currentIndex() == 1;
    properties.breaksPageOnGroup = ckPageBreak->isChecked();
    properties.columns = m_columns->columns();
    return properties;
}

int frmCVRProps::selectedRow() const
{
    const QModelIndexList selected = ctList1->selectionModel()->selectedRows();
    return selected.isEmpty() ? -1 : selected.front().row();
}

void frmCVRProps::selectRow(int row)
{
    ctList1->setCurrentIndex(m_columns->index(row, 0));
}

void frmCVRProps::columns_Change()
{
    const bool isLandscape = cboorient->currentIndex() == 1;
    m_ruler->showColumns(m_columns->columns(), isLandscape);
    m_ruler->setCurrentRow(selectedRow());
    lblTotal->setText(columnSizeSummary(m_columns->columns(), isLandscape));
    QFont font = this->font();
    font.setBold(!columnSizesFit(m_columns->columns(), isLandscape));
    lblTotal->setFont(font);
}

void frmCVRProps::ctList1_Click()
{
    const int row = selectedRow();
    for (QWidget *control :
        std::initializer_list<QWidget *>{txtcolsize, Command1, Command2, Command3})
        control->setEnabled(row >= 0);
    txtcolsize->setText(row < 0 ? QString() : m_columns->columns()[size_t(row)].size.trimmed());
    m_ruler->setCurrentRow(row);
}

/// Deliberate: the sizes are checked as they stand before the new one is stored. One that is too
/// wide is taken once, and every later change is refused until the page is turned on its side; the
/// ruler shows it.
void frmCVRProps::Command1_Click()
{
    const int row = selectedRow();
    if (row >= 0 && leadingNumber(txtcolsize->text()) > 0 && ValidateColSizes())
        m_columns->setSize(row, txtcolsize->text());
}

bool frmCVRProps::ValidateColSizes()
{
    if (columnSizesFit(m_columns->columns(), cboorient->currentIndex() == 1))
        return true;
    m_boxes.message(
        tr("Total of column sizes cannot be more than page width."), MessageFlags::Exclamation, {});
    return false;
}

void frmCVRProps::changeListOrder(qint16 direction)
{
    const int row = selectedRow();
    if (row < 0)
        return;
    selectRow(m_columns->exchange(row, direction));
}

/// Deliberate: the font stands in this form only; a definition's own font is a key of its own.
void frmCVRProps::Command4_Click()
{
    const QStringList parts = lblFont->text().split(u';');
    QFontDialog diafont(QFont(parts.value(0), qMax(1, int(leadingNumber(parts.value(1))))), this);
    diafont.setObjectName(QStringLiteral("diafont"));
    diafont.setWindowTitle(tr("Select Font"));
    diafont.setOption(QFontDialog::ScalableFonts); // what a printer can print
    if (diafont.exec() != QDialog::Accepted)
        return;
    const QFont font = diafont.selectedFont();
    lblFont->setText(font.family() + u';' + QString::number(font.pointSizeF()));
}

void frmCVRProps::Command5_Click()
{
    const PageProperties properties = collected();
    if (!mayWrite(properties))
        return;
    lblfin->setText(columnTexts(properties.columns).fields);
    try {
        if (save(properties))
            accept();
    } catch (const ProfileWriteError &error) {
        m_boxes.message(
            tr("%1\n\nWhat you entered is still in the form: mend the cause and press Ok again.")
                .arg(error.message()),
            MessageFlags::Exclamation, windowTitle());
    }
}

/// Asks again for each change that comes in between. False: the form stays open.
bool frmCVRProps::save(const PageProperties &properties)
{
    while (!m_definition.save(properties)) {
        if (!settleChange())
            return false;
    }
    return true;
}

/// True: what this form holds is to replace what somebody else wrote.
bool frmCVRProps::settleChange()
{
    const MessageAnswer answer = m_boxes.message(
        tr("\"%1\" was changed by somebody else while this form was open. Only one of the two can "
           "stay:\n\n"
           "Yes keeps yours. What the other wrote is replaced, the query included.\n"
           "No takes the other's. The form shows it, and what you entered is given up.\n"
           "Cancel goes back to the form, and nothing is written.")
            .arg(QFileInfo(m_definition.file()).fileName()),
        MessageFlags::YesNoCancel | MessageFlags::Exclamation, windowTitle());
    if (answer == MessageAnswer::Yes)
        m_definition.overruleChange();
    else if (answer == MessageAnswer::No && loadDefinition())
        setProblems({}); // they were the old file's
    return answer == MessageAnswer::Yes;
}

bool frmCVRProps::mayWrite(const PageProperties &properties)
{
    if (const QString refusal = editRefusal(m_definition.file()); !refusal.isEmpty()) {
        m_boxes.message(
            tr("%1\n\nNothing was written. What you entered is still in the form.").arg(refusal),
            MessageFlags::Exclamation, windowTitle());
        return false;
    }
    if (const auto fault = m_definition.fault(properties)) {
        m_boxes.message(tr("%1\n\nNothing was written.").arg(fault->text),
            MessageFlags::Exclamation, windowTitle());
        point(*fault);
        return false;
    }
    return true;
}

/// Takes the user to what has to be mended.
void frmCVRProps::point(const PropertyFault &fault)
{
    switch (fault.place) {
    case PropertyFault::Header:
        cboHeader[size_t(fault.index)]->setFocus();
        return;
    case PropertyFault::Footer:
        cbofooter[size_t(fault.index)]->setFocus();
        return;
    case PropertyFault::Caption:
        selectRow(fault.index);
        ctList1->edit(m_columns->index(fault.index, 0));
        return;
    case PropertyFault::Size:
        selectRow(fault.index);
        txtcolsize->setFocus();
        txtcolsize->selectAll();
        return;
    }
}

bool frmCVRProps::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == txtcolsize && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            Command1_Click(); // and not "Ok", which would save
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

} // namespace corvane

// How the properties form's controls are named, placed and connected.

#include "editor/frm_cvr_props.h"

#include "editor/column_model.h"
#include "editor/column_ruler.h"
#include "platform/controls/control_names.h"
#include "platform/controls/quiet_label.h"
#include "platform/controls/roomy_rows.h"

#include <QtGui/QShortcut>
#include <QtGui/QValidator>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QFrame>
#include <QtWidgets/QGridLayout>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPlainTextEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QTreeView>

namespace corvane {

namespace {

constexpr int kListLetters = 52;  ///< smallest width of the list
constexpr int kListLines = 9;     ///< smallest height of the list
constexpr int kFormLetters = 97; ///< width to begin with
constexpr int kFormLines = 39;    ///< height to begin with
constexpr int kSizeLetters = 14; ///< width of the list's second column
constexpr int kQueryLines = 3;
constexpr int kProblemLines = 4;

/// Inches with at most two decimals, which a definition keeps exactly. A comma is typed for a point
/// where that is the custom.
class SizeValidator : public QValidator
{
public:
    using QValidator::QValidator;

    State validate(QString &text, int &) const override
    {
        text.replace(u',', u'.');
        const qsizetype point = text.indexOf(u'.');
        const qsizetype whole = point < 0 ? text.size() : point;
        const bool isNumber = std::ranges::all_of(
            text, [](QChar c) { return (c >= u'0' && c <= u'9') || c == u'.'; });
        return isNumber && text.count(u'.') <= 1 && whole <= 3 && text.size() - whole <= 3
            ? Acceptable
            : Invalid;
    }
};

/// A text that may be longer than the form is wide.
void keepNarrow(QLabel *label)
{
    label->setTextFormat(Qt::PlainText);
    label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
}

void setLines(QPlainTextEdit *box, int lines)
{
    box->setFixedHeight(box->fontMetrics().lineSpacing() * lines
        + 2 * (box->frameWidth() + int(box->document()->documentMargin())));
    box->setTabChangesFocus(true);
}

} // namespace

void frmCVRProps::nameControls()
{
    const std::array<QString, 3> sides{tr("left"), tr("center"), tr("right")};
    for (int side = Left; side <= Right; ++side) {
        nameControl(cboHeader[size_t(side)], QStringLiteral("cboHeader%1").arg(side),
            tr("Header %1").arg(sides[size_t(side)]));
        nameControl(cbofooter[size_t(side)], QStringLiteral("cbofooter%1").arg(side),
            tr("Footer %1").arg(sides[size_t(side)]));
    }
    nameControl(cboorient, QStringLiteral("cboorient"), tr("Orientation"));
    nameControl(ckPageBreak, QStringLiteral("ckPageBreak"), tr("Page break on groups"));
    nameControl(ctList1, QStringLiteral("ctList1"), tr("Printed columns"));
    nameControl(txtcolsize, QStringLiteral("txtcolsize"), tr("Column size in inches"));
    nameControl(m_ruler, QStringLiteral("ruler"), tr("Columns to scale"));
    nameControl(lblTotal, QStringLiteral("lblTotal"), tr("Width of all columns"));
    nameControl(txtsql, QStringLiteral("txtsql"), tr("Query"));
    nameControl(lblload, QStringLiteral("lblload"), tr("Result fields as loaded"));
    nameControl(lblfin, QStringLiteral("lblfin"), tr("Result fields as saved"));
    nameControl(lblFont, QStringLiteral("lblFont"), tr("Font"));
    nameControl(Command1, QStringLiteral("Command1"), tr("Update the column's size"));
    nameControl(Command2, QStringLiteral("Command2"), tr("Move the column up"));
    nameControl(Command3, QStringLiteral("Command3"), tr("Move the column down"));
    nameControl(Command4, QStringLiteral("Command4"), tr("Choose a font"));
    nameControl(Command5, QStringLiteral("Command5"), tr("Ok"));
    nameControl(Command6, QStringLiteral("Command6"), tr("Cancel"));
    nameControl(txtproblems, QStringLiteral("txtproblems"), tr("Problems of the definition"));
}

/// Deliberate: uneven. The right header text offers nothing, the right footer text both; clinics
/// know the lists like this.
void frmCVRProps::prefillTexts()
{
    const QString date = QStringLiteral("{Date}");
    for (QComboBox *box : {cboHeader[Left], cboHeader[Center], cbofooter[Right]})
        box->addItem(date);
    for (QComboBox *box : cbofooter)
        box->addItem(QStringLiteral("Page %d"));
}

void frmCVRProps::setUpList()
{
    ctList1->setModel(m_columns);
    ctList1->setRootIsDecorated(false);
    ctList1->setItemsExpandable(false);
    ctList1->setUniformRowHeights(true);
    ctList1->setAllColumnsShowFocus(true);
    ctList1->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed);
    ctList1->setDragDropMode(QAbstractItemView::DragDrop);
    ctList1->setDragDropOverwriteMode(false);
    ctList1->setDefaultDropAction(Qt::MoveAction);
    ctList1->setItemDelegate(new RoomyRows(ctList1));
    ctList1->setMinimumSize(lettersWide(this, kListLetters), linesHigh(this, kListLines));
    ctList1->header()->setStretchLastSection(false);
    ctList1->header()->setSectionsMovable(false);
    ctList1->header()->setHighlightSections(false);
    ctList1->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    ctList1->header()->resizeSection(1, kSizeLetters * fontMetrics().averageCharWidth());
    ctList1->setToolTip(tr("Double click or F2 changes a caption. Drag a row, or press Alt+Up or "
                           "Alt+Down, to move it."));
}

/// Of the labels at the left edge, so that all that they name begins at one line.
int frmCVRProps::labelWidth() const
{
    return fontMetrics().horizontalAdvance(tr("Result fields"));
}

QLayout *frmCVRProps::pageTexts()
{
    auto *grid = new QGridLayout;
    const std::array<QString, 3> captions{tr("Left"), tr("Center"), tr("Right")};
    for (int side = Left; side <= Right; ++side) {
        grid->setColumnStretch(side + 1, 1);
        grid->addWidget(new QuietLabel(captions[size_t(side)]), 0, side + 1);
        for (QComboBox *box : {cboHeader[size_t(side)], cbofooter[size_t(side)]}) {
            box->setEditable(true);
            box->setInsertPolicy(QComboBox::NoInsert);
            box->setCompleter(nullptr); // it would change what is typed
            box->setMinimumContentsLength(8);
            grid->addWidget(box, box == cboHeader[size_t(side)] ? 1 : 2, side + 1);
        }
    }
    auto *header = new QLabel(tr("Header"));
    auto *footer = new QLabel(tr("Footer"));
    header->setBuddy(cboHeader[Left]);
    footer->setBuddy(cbofooter[Left]);
    grid->addWidget(header, 1, 0);
    grid->addWidget(footer, 2, 0);
    grid->setColumnMinimumWidth(0, labelWidth());
    auto *note = new QuietLabel(tr(
        "The left footer text is kept but not printed: the database's name stands in its place."));
    note->setObjectName(QStringLiteral("lblNotPrinted"));
    note->setWordWrap(true);
    cbofooter[Left]->setAccessibleDescription(note->text());
    grid->addWidget(note, 3, 1, 1, 3);
    return grid;
}

QLayout *frmCVRProps::pageLayout()
{
    cboorient->addItems({tr("Portrait"), tr("Landscape")});
    auto *label = new QLabel(tr("Orientation"));
    label->setBuddy(cboorient);
    label->setMinimumWidth(labelWidth());
    auto *row = new QHBoxLayout;
    row->addWidget(label);
    row->addWidget(cboorient);
    row->addSpacing(2 * controlGap(this));
    row->addWidget(ckPageBreak);
    row->addStretch();
    return row;
}

QLayout *frmCVRProps::columnList()
{
    setUpList();
    txtcolsize->setValidator(new SizeValidator(txtcolsize));
    txtcolsize->setMaximumWidth(Command1->sizeHint().width());
    txtcolsize->installEventFilter(this);
    auto *label = new QLabel(tr("Inches"));
    label->setBuddy(txtcolsize);
    auto *side = new QVBoxLayout;
    side->addWidget(Command2);
    side->addWidget(Command3);
    side->addStretch();
    side->addWidget(label);
    side->addWidget(txtcolsize);
    side->addWidget(Command1);
    auto *row = new QHBoxLayout;
    row->addWidget(ctList1, 1);
    row->addLayout(side);
    return row;
}

QLayout *frmCVRProps::details()
{
    setLines(txtsql, kQueryLines);
    txtsql->setReadOnly(true);
    for (QLabel *label : {lblload, lblfin})
        keepNarrow(label);
    lblFont->setTextFormat(Qt::PlainText);
    auto *grid = new QGridLayout;
    grid->setColumnStretch(1, 1);
    grid->setColumnMinimumWidth(0, labelWidth());
    auto *query = new QLabel(tr("Query"));
    query->setBuddy(txtsql);
    grid->addWidget(query, 0, 0, Qt::AlignTop);
    grid->addWidget(txtsql, 0, 1);
    auto *fields = new QHBoxLayout;
    fields->addWidget(lblload, 1);
    fields->addWidget(lblfin, 1);
    grid->addWidget(new QLabel(tr("Result fields")), 1, 0);
    grid->addLayout(fields, 1, 1);
    auto *font = new QHBoxLayout;
    font->addWidget(lblFont);
    font->addWidget(Command4);
    font->addWidget(new QuietLabel(tr("Not saved: the report's font is a key of its definition.")), 1);
    grid->addWidget(new QLabel(tr("Font")), 2, 0);
    grid->addLayout(font, 2, 1);
    return grid;
}

QWidget *frmCVRProps::problemStrip()
{
    m_problemStrip = new QFrame(this);
    m_problemStrip->setObjectName(QStringLiteral("pnlproblems"));
    txtproblems->setReadOnly(true);
    txtproblems->setLineWrapMode(QPlainTextEdit::NoWrap);
    setLines(txtproblems, kProblemLines);
    auto *label = new QLabel(tr("Problems"));
    QFont bold = label->font();
    bold.setBold(true);
    label->setFont(bold);
    label->setBuddy(txtproblems);
    auto *column = new QVBoxLayout(m_problemStrip);
    column->setContentsMargins({});
    column->addWidget(label);
    column->addWidget(txtproblems);
    m_problemStrip->hide();
    return m_problemStrip;
}

void frmCVRProps::buildForm()
{
    lblTotal->setTextFormat(Qt::PlainText);
    for (QPushButton *button : {Command1, Command2, Command3, Command4, Command6})
        button->setAutoDefault(false);
    Command5->setDefault(true);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(Command5);
    buttons->addWidget(Command6);
    auto *form = new QVBoxLayout(this);
    form->setSpacing(form->spacing() + controlGap(this) / 2);
    form->addLayout(pageTexts());
    form->addLayout(pageLayout());
    form->addLayout(columnList(), 1);
    form->addWidget(m_ruler);
    form->addWidget(lblTotal);
    form->addLayout(details());
    form->addWidget(problemStrip());
    form->addLayout(buttons);
    resize(lettersWide(this, kFormLetters), linesHigh(this, kFormLines));

    const std::array<QWidget *, 19> order{cboHeader[Left], cboHeader[Center], cboHeader[Right],
        cbofooter[Left], cbofooter[Center], cbofooter[Right], cboorient, ckPageBreak, ctList1,
        Command2, Command3, txtcolsize, Command1, txtsql, Command4, txtproblems, Command5, Command6,
        nullptr};
    for (size_t i = 0; order[i + 1]; ++i)
        setTabOrder(order[i], order[i + 1]);
    ctList1->setFocus();
}

void frmCVRProps::connectControls()
{
    connect(m_columns, &ColumnModel::changed, this, &frmCVRProps::columns_Change);
    connect(cboorient, &QComboBox::currentIndexChanged, this, &frmCVRProps::columns_Change);
    connect(ctList1->selectionModel(), &QItemSelectionModel::selectionChanged, this,
        &frmCVRProps::ctList1_Click);
    connect(m_ruler, &ColumnRuler::rowClicked, this, &frmCVRProps::selectRow);
    const auto move
        = [this](qint16 direction) { return [this, direction] { changeListOrder(direction); }; };
    connect(Command2, &QPushButton::clicked, this, move(MoveUp));
    connect(Command3, &QPushButton::clicked, this, move(MoveDown));
    for (const auto &[key, direction] :
        {std::pair(Qt::Key_Up, MoveUp), std::pair(Qt::Key_Down, MoveDown)}) {
        auto *shortcut = new QShortcut(
            QKeySequence(Qt::ALT | key), ctList1, nullptr, nullptr, Qt::WidgetShortcut);
        connect(shortcut, &QShortcut::activated, this, move(direction));
    }
    connect(Command1, &QPushButton::clicked, this, &frmCVRProps::Command1_Click);
    connect(Command4, &QPushButton::clicked, this, &frmCVRProps::Command4_Click);
    connect(Command5, &QPushButton::clicked, this, &frmCVRProps::Command5_Click);
    connect(Command6, &QPushButton::clicked, this, &QDialog::reject);
}

} // namespace corvane

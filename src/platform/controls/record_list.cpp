#include "platform/controls/record_list.h"

#include "platform/controls/roomy_rows.h"

#include <QtGui/QKeyEvent>
#include <QtWidgets/QApplication>
#include <QtWidgets/QHeaderView>

#include <algorithm>

namespace corvane {

namespace {

constexpr int kColumnLetters = 18; // width of every column but the first, which takes the rest

bool isTypedText(const QKeyEvent &event)
{
    const Qt::KeyboardModifiers others = event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier);
    return others == Qt::NoModifier && !event.text().isEmpty() && event.text().front().isPrint();
}

bool isOneLetter(const QString &typed)
{
    return std::all_of(typed.begin(), typed.end(), [&](QChar letter) { return letter == typed.front(); });
}

} // namespace

RecordList::RecordList(QWidget *parent)
    : QTreeView(parent)
{
    setModel(&m_model);
    setUniformRowHeights(true);
    setItemDelegate(new RoomyRows(this));
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setAllColumnsShowFocus(true);
    setSelectionMode(SingleSelection);
    setEditTriggers(NoEditTriggers);
    setAccessibleName(tr("Records"));
    header()->setStretchLastSection(false);
    header()->setSectionsMovable(false);
    header()->setHighlightSections(false);
    connect(&m_model, &RecordModel::modelReset, this, &RecordList::layOutColumns);
    connect(selectionModel(), &QItemSelectionModel::selectionChanged, this, &RecordList::currentRowChanged);
}

int RecordList::currentRow() const
{
    // A list that takes the focus has a current row at once; it is the user's only when selected.
    const QModelIndex current = currentIndex();
    return selectionModel()->isSelected(current) ? current.row() : -1;
}

void RecordList::selectRow(int row)
{
    const auto whole = QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows;
    selectionModel()->setCurrentIndex(m_model.index(row, 0), whole);
}

void RecordList::keyboardSearch(const QString &typed)
{
    if (typed.isEmpty())
        return;
    const bool goesOn = m_sinceTyped.isValid() && m_sinceTyped.elapsed() < QApplication::keyboardInputInterval();
    m_sinceTyped.start();
    m_typed = goesOn ? QString(m_typed + typed) : typed;
    // The same letter again and again walks through the rows that begin with it.
    const bool walks = isOneLetter(m_typed);
    const QStringView prefix = walks ? QStringView(m_typed).first(1) : QStringView(m_typed);
    const int row = m_model.findPrefix(prefix, std::max(0, walks ? currentRow() + 1 : currentRow()));
    if (row >= 0)
        selectRow(row);
}

void RecordList::keyPressEvent(QKeyEvent *event)
{
    const int current = currentRow();
    const bool hasRows = m_model.rowCount() > 0;
    const int focused = std::max(0, currentIndex().row());
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        // Kept from the dialog's default button, which would accept a second time.
        event->setAccepted(current >= 0);
        if (current >= 0)
            Q_EMIT accepted(current);
        return;
    case Qt::Key_Space:
        if (!m_model.hasMarks() || event->modifiers() != Qt::NoModifier)
            break;
        if (hasRows) {
            selectRow(focused);
            m_model.setMarked(focused, !m_model.isMarked(focused));
        }
        return;
    case Qt::Key_Down:
    case Qt::Key_Up:
        if (current >= 0 || !hasRows)
            break;
        selectRow(focused);
        return;
    default:
        break;
    }
    if (isTypedText(*event)) // before the tree takes "+", "-" and "*" for itself
        keyboardSearch(event->text());
    else
        QTreeView::keyPressEvent(event);
}

void RecordList::mouseDoubleClickEvent(QMouseEvent *event)
{
    // Two quick clicks on a check box mark and unmark; they accept nothing.
    if (event->button() != Qt::LeftButton || isOnCheckBox(event->pos())) {
        mousePressEvent(event);
        return;
    }
    QTreeView::mouseDoubleClickEvent(event);
    const QModelIndex at = indexAt(event->pos());
    if (at.isValid())
        Q_EMIT accepted(at.row());
}

void RecordList::layOutColumns()
{
    const int letter = fontMetrics().averageCharWidth();
    for (int column = 0; column < m_model.columnCount(); ++column) {
        header()->setSectionResizeMode(column, column == 0 ? QHeaderView::Stretch : QHeaderView::Interactive);
        if (column > 0)
            header()->resizeSection(column, kColumnLetters * letter);
    }
}

bool RecordList::isOnCheckBox(QPoint position) const
{
    const QModelIndex at = indexAt(position);
    if (!at.isValid() || at.column() != 0 || !m_model.hasMarks())
        return false;
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    option.rect = visualRect(at);
    option.features |= QStyleOptionViewItem::HasCheckIndicator;
    return style()->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &option, this).contains(position);
}

} // namespace corvane

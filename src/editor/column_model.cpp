#include "editor/column_model.h"

#include <QtCore/QMimeData>

namespace corvane {

namespace {

const QString kDragType = QStringLiteral("application/x-corvane-column");

} // namespace

void ColumnModel::setColumns(std::vector<PrintedColumn> columns)
{
    beginResetModel();
    m_columns = std::move(columns);
    endResetModel();
    Q_EMIT changed();
}

void ColumnModel::setSize(int row, const QString &size)
{
    m_columns[size_t(row)].size = size;
    const QModelIndex cell = index(row, Size);
    Q_EMIT dataChanged(cell, cell);
    Q_EMIT changed();
}

int ColumnModel::exchange(int row, qint16 direction)
{
    const int other = direction == MoveUp ? row - 1 : row + 1;
    if (other < 0 || other >= rowCount())
        return row;
    // A moved row stays the selected one; "before the row after the next" is how a view calls one
    // down.
    beginMoveRows({}, row, row, {}, direction == MoveUp ? other : other + 1);
    const int place = changeListOrder(m_columns, row, direction);
    endMoveRows();
    Q_EMIT changed();
    return place;
}

void ColumnModel::moveTo(int row, int place)
{
    const qint16 direction = place < row ? MoveUp : MoveDown;
    while (row != place) {
        const int next = exchange(row, direction);
        if (next == row)
            return;
        row = next;
    }
}

int ColumnModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_columns.size());
}

int ColumnModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : PartCount;
}

QVariant ColumnModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)
        || (role != Qt::DisplayRole && role != Qt::EditRole))
        return {};
    const PrintedColumn &column = m_columns[size_t(index.row())];
    return index.column() == Caption ? column.caption : column.size.trimmed();
}

bool ColumnModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::EditRole || index.column() != Caption)
        return false;
    m_columns[size_t(index.row())].caption = value.toString();
    Q_EMIT dataChanged(index, index);
    Q_EMIT changed();
    return true;
}

QVariant ColumnModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal)
        return {};
    if (role == Qt::TextAlignmentRole)
        return int(Qt::AlignLeft | Qt::AlignVCenter);
    if (role != Qt::DisplayRole)
        return {};
    return section == Caption ? tr("Field Name") : tr("Column Size");
}

Qt::ItemFlags ColumnModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::ItemIsDropEnabled; // between rows, never onto one
    const Qt::ItemFlags plain = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled
        | Qt::ItemNeverHasChildren;
    return index.column() == Caption ? plain | Qt::ItemIsEditable : plain;
}

QStringList ColumnModel::mimeTypes() const
{
    return {kDragType};
}

QMimeData *ColumnModel::mimeData(const QModelIndexList &indexes) const
{
    if (indexes.isEmpty())
        return nullptr;
    auto *data = new QMimeData;
    data->setData(kDragType, dragMark() + ' ' + QByteArray::number(indexes.front().row()));
    return data;
}

bool ColumnModel::dropMimeData(
    const QMimeData *data, Qt::DropAction, int row, int, const QModelIndex &parent)
{
    const QList<QByteArray> words = data->data(kDragType).split(' ');
    if (words.size() != 2 || words[0] != dragMark() || parent.isValid())
        return false;
    const int from = words[1].toInt();
    const int before = row < 0 ? rowCount() : row;
    moveTo(from, before > from ? before - 1 : before);
    return false; // the row is moved already, and the view must not remove it
}

/// Tells this list's own rows from those of another form or another program.
QByteArray ColumnModel::dragMark() const
{
    return QByteArray::number(quintptr(this));
}

} // namespace corvane

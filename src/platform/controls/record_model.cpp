#include "platform/controls/record_model.h"

namespace corvane {

void RecordModel::setColumns(const QStringList &headers, bool withMarks)
{
    beginResetModel();
    dropRows();
    m_headers = headers;
    m_hasMarks = withMarks;
    endResetModel();
}

void RecordModel::beginFill()
{
    Q_ASSERT(m_ends.size() == size_t(m_rowCount) * cellsPerRow());
}

void RecordModel::endFill()
{
    const int rows = int(m_ends.size() / cellsPerRow());
    if (rows == m_rowCount)
        return;
    beginInsertRows({}, m_rowCount, rows - 1);
    m_marks.resize(size_t(rows));
    m_rowCount = rows;
    endInsertRows();
}

void RecordModel::add(std::span<const QStringView> columns, QStringView hidden)
{
    Q_ASSERT(columns.size() + 1 == cellsPerRow());
    const auto append = [this](QStringView text) {
        m_arena.append(text.utf16(), size_t(text.size()));
        m_ends.push_back(quint32(m_arena.size()));
    };
    for (const QStringView text : columns)
        append(text);
    append(hidden);
}

void RecordModel::clear()
{
    beginResetModel();
    dropRows();
    endResetModel();
}

void RecordModel::setMarked(int row, bool marked)
{
    if (isMarked(row) == marked)
        return;
    m_marks[size_t(row)] = marked;
    m_markedCount += marked ? 1 : -1;
    const QModelIndex changed = index(row, 0);
    Q_EMIT dataChanged(changed, changed, {Qt::CheckStateRole});
    Q_EMIT marksChanged();
}

void RecordModel::markAll(bool marked)
{
    m_marks.assign(size_t(m_rowCount), marked);
    m_markedCount = marked ? m_rowCount : 0;
    allMarksChanged();
}

void RecordModel::invertMarks()
{
    m_marks.flip();
    m_markedCount = m_rowCount - m_markedCount;
    allMarksChanged();
}

int RecordModel::findPrefix(QStringView prefix, int start) const
{
    for (int step = 0; step < m_rowCount; ++step) {
        const int row = (start + step) % m_rowCount;
        if (cell(row, 0).startsWith(prefix, Qt::CaseInsensitive))
            return row;
    }
    return -1;
}

int RecordModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_rowCount;
}

int RecordModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_headers.size());
}

QVariant RecordModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    if (role == Qt::DisplayRole)
        return text(index.row(), index.column());
    if (role == Qt::CheckStateRole && m_hasMarks && index.column() == 0)
        return isMarked(index.row()) ? Qt::Checked : Qt::Unchecked;
    return {};
}

bool RecordModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::CheckStateRole || !m_hasMarks || index.column() != 0)
        return false;
    setMarked(index.row(), value.toInt() == Qt::Checked);
    return true;
}

QVariant RecordModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal)
        return {};
    if (role == Qt::TextAlignmentRole)
        return int(Qt::AlignLeft | Qt::AlignVCenter);
    return role == Qt::DisplayRole ? QVariant(m_headers.value(section)) : QVariant();
}

Qt::ItemFlags RecordModel::flags(const QModelIndex &index) const
{
    const Qt::ItemFlags plain = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
    return m_hasMarks && index.column() == 0 ? plain | Qt::ItemIsUserCheckable : plain;
}

QStringView RecordModel::cell(int row, int column) const
{
    const size_t at = size_t(row) * cellsPerRow() + size_t(column);
    const size_t start = at == 0 ? 0 : m_ends[at - 1];
    return {m_arena.data() + start, qsizetype(m_ends[at] - start)};
}

void RecordModel::dropRows()
{
    m_arena = {};
    m_ends = {};
    m_marks = {};
    m_rowCount = 0;
    m_markedCount = 0;
}

void RecordModel::allMarksChanged()
{
    if (m_rowCount > 0)
        Q_EMIT dataChanged(index(0, 0), index(m_rowCount - 1, 0), {Qt::CheckStateRole});
    Q_EMIT marksChanged();
}

} // namespace corvane

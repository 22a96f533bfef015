#pragma once

#include <QtCore/QAbstractTableModel>
#include <QtCore/QStringList>

#include <span>
#include <string>
#include <vector>

namespace corvane {

/// Rows of texts with one hidden text each and, where asked for, a mark: packed, without an object per
/// row, in the order in which they were added. Rows and columns count from 0.
class RecordModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    using QAbstractTableModel::QAbstractTableModel;

    /// Drops all rows. With marks, the first column shows a check box.
    void setColumns(const QStringList &headers, bool withMarks);
    bool hasMarks() const { return m_hasMarks; }

    /// Rows are added between these two; views see them all at once at the end.
    void beginFill();
    void endFill();
    /// One text per column, unmarked.
    void add(std::span<const QStringView> columns, QStringView hidden);
    void clear();

    QString text(int row, int column) const { return cell(row, column).toString(); }
    QString hidden(int row) const { return cell(row, int(m_headers.size())).toString(); }

    bool isMarked(int row) const { return m_marks[size_t(row)]; }
    void setMarked(int row, bool marked);
    int markedCount() const { return m_markedCount; }
    void markAll(bool marked);
    void invertMarks();

    /// The first row from `start` on, the top again after the end, whose first column begins with
    /// `prefix` without regard to case; -1 when there is none.
    int findPrefix(QStringView prefix, int start) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

Q_SIGNALS:
    void marksChanged();

private:
    QStringView cell(int row, int column) const;
    size_t cellsPerRow() const { return size_t(m_headers.size()) + 1; }
    void dropRows();
    void allMarksChanged();

    QStringList m_headers;
    std::u16string m_arena;       ///< every text, one behind the other
    std::vector<quint32> m_ends;  ///< where each cell's text ends in the arena, the hidden text last in its row
    std::vector<bool> m_marks;
    int m_rowCount = 0;           ///< rows that views know of
    int m_markedCount = 0;
    bool m_hasMarks = false;
};

} // namespace corvane

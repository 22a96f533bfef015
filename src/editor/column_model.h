#pragma once

#include "editor/page_properties.h"

#include <QtCore/QAbstractTableModel>

namespace corvane {

/// The printed columns as a list of captions, which are edited in place, and sizes. Rows are
/// dragged between others. Rows count from 0.
class ColumnModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    using QAbstractTableModel::QAbstractTableModel;

    void setColumns(std::vector<PrintedColumn> columns);
    const std::vector<PrintedColumn> &columns() const { return m_columns; }

    void setSize(int row, const QString &size);
    /// @return the row's new place
    int exchange(int row, qint16 direction);
    /// Takes a row to another place, neighbour by neighbour.
    void moveTo(int row, int place);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

    Qt::DropActions supportedDropActions() const override { return Qt::MoveAction; }
    QStringList mimeTypes() const override;
    QMimeData *mimeData(const QModelIndexList &indexes) const override;
    bool dropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
        const QModelIndex &parent) override;

Q_SIGNALS:
    /// Anything that the ruler draws.
    void changed();

private:
    enum Part { Caption, Size, PartCount };

    QByteArray dragMark() const;

    std::vector<PrintedColumn> m_columns;
};

} // namespace corvane

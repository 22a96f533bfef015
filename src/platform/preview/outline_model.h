#pragma once

#include "platform/composer/document.h"

#include <QtCore/QAbstractItemModel>

namespace corvane {

/// A document's outline as a tree: an entry stands below the last one of a smaller depth. Two
/// columns, the title and the page's number.
class OutlineModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    using QAbstractItemModel::QAbstractItemModel;

    void setDocument(const DocumentPtr &document);
    bool isEmpty() const { return m_nodes.empty(); }

    const OutlineEntry &entry(const QModelIndex &index) const;
    /// The group that a page shows: the first that starts on it, else the last one before. Invalid:
    /// none.
    QModelIndex groupOf(int page) const;

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &index) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;

private:
    struct Node
    {
        int parent = -1; ///< number of the entry above it; -1: none
        int row = 0;
        std::vector<int> children;
    };

    const std::vector<int> &childrenOf(const QModelIndex &parent) const;
    QModelIndex indexOf(int entry, int column = 0) const;

    DocumentPtr m_document;
    std::vector<Node> m_nodes; ///< one per entry, in their order
    std::vector<int> m_top;
};

} // namespace corvane

#include "platform/preview/outline_model.h"

#include "platform/controls/tool_tip.h"

#include <QtGui/QPalette>

#include <algorithm>

namespace corvane {

void OutlineModel::setDocument(const DocumentPtr &document)
{
    beginResetModel();
    m_document = document;
    m_nodes.assign(document ? document->outline.size() : 0, {});
    m_top.clear();
    std::vector<int> open; // the last entry of each level above the next one
    for (int i = 0; i < int(m_nodes.size()); ++i) {
        const int depth = document->outline[size_t(i)].depth;
        while (!open.empty() && document->outline[size_t(open.back())].depth >= depth)
            open.pop_back();
        Node &node = m_nodes[size_t(i)];
        node.parent = open.empty() ? -1 : open.back();
        std::vector<int> &siblings
            = node.parent < 0 ? m_top : m_nodes[size_t(node.parent)].children;
        node.row = int(siblings.size());
        siblings.push_back(i);
        open.push_back(i);
    }
    endResetModel();
}

const OutlineEntry &OutlineModel::entry(const QModelIndex &index) const
{
    return m_document->outline[index.internalId()];
}

QModelIndex OutlineModel::groupOf(int page) const
{
    if (isEmpty())
        return {};
    const std::vector<OutlineEntry> &outline = m_document->outline;
    const auto from = std::ranges::lower_bound(outline, page, {}, &OutlineEntry::page);
    const bool startsHere = from != outline.end() && from->page == page;
    const auto number = int(from - outline.begin()) - (startsHere ? 0 : 1);
    return number < 0 ? QModelIndex() : indexOf(number);
}

QModelIndex OutlineModel::index(int row, int column, const QModelIndex &parent) const
{
    if (!hasIndex(row, column, parent))
        return {};
    return createIndex(row, column, quintptr(childrenOf(parent)[size_t(row)]));
}

QModelIndex OutlineModel::parent(const QModelIndex &index) const
{
    if (!index.isValid())
        return {};
    const int above = m_nodes[index.internalId()].parent;
    return above < 0 ? QModelIndex() : indexOf(above);
}

int OutlineModel::rowCount(const QModelIndex &parent) const
{
    return parent.column() > 0 ? 0 : int(childrenOf(parent).size());
}

int OutlineModel::columnCount(const QModelIndex &) const
{
    return 2;
}

QVariant OutlineModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const OutlineEntry &shown = entry(index);
    const bool isTitle = index.column() == 0;
    switch (role) {
    case Qt::DisplayRole:
        return isTitle ? shown.title : QString::number(shown.page + 1);
    case Qt::ToolTipRole:
        return plainToolTip(shown.title);
    case Qt::AccessibleTextRole:
        return isTitle ? tr("%1, page %2").arg(shown.title).arg(shown.page + 1)
                       : QString::number(shown.page + 1);
    case Qt::TextAlignmentRole:
        return int(Qt::AlignVCenter | (isTitle ? Qt::AlignLeft : Qt::AlignRight));
    default:
        return {};
    }
}

const std::vector<int> &OutlineModel::childrenOf(const QModelIndex &parent) const
{
    return parent.isValid() ? m_nodes[parent.internalId()].children : m_top;
}

QModelIndex OutlineModel::indexOf(int entry, int column) const
{
    return createIndex(m_nodes[size_t(entry)].row, column, quintptr(entry));
}

} // namespace corvane

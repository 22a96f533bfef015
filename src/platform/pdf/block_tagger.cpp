#include "platform/pdf/block_tagger.h"

#include "platform/pdf/outline_tree.h"

#include <algorithm>

namespace corvane {

namespace {

constexpr int kDeepestHeading = 6;

/// The letters of all of a block's cells.
QString lettersOf(const Page &page, size_t block)
{
    const std::span<const TextRun> runs = page.blockRuns(block);
    if (runs.empty())
        return {};
    const quint32 begin = runs.front().textStart;
    const quint32 end = runs.back().textStart + runs.back().textLength;
    return page.text.sliced(begin, std::max(begin, end) - begin).simplified();
}

} // namespace

BlockTagger::BlockTagger(const Document &document, StructureTree &tree)
    : m_document(document)
    , m_tree(tree)
    , m_levels(outlineLevels(document.outline))
{
}

std::span<const StructureTree::Id> BlockTagger::tag(const Page &page, size_t index)
{
    const Block &block = page.blocks[index];
    std::vector<Id> &elements = last(block.kind);
    const bool goesOn = block.continuesPreviousPage && (elements.empty() || elements.size() == block.columnCount);
    if (goesOn)
        return elements;
    elements.clear();
    switch (block.kind) {
    case BlockKind::Paragraph:
        tagParagraph(page.blockRuns(index).empty());
        break;
    case BlockKind::HeadingRow:
        tagHeadingRow(page, index);
        break;
    case BlockKind::Row:
        tagRow(std::max<int>(block.columnCount, 1));
        break;
    case BlockKind::Caption:
        tagCaption(page, index);
        break;
    case BlockKind::Furniture:
        break;
    }
    return elements;
}

void BlockTagger::place(Id element)
{
    if (!m_heading)
        closeTable();
    if (m_table)
        m_waiting.push_back(element);
    else
        m_tree.attach(element, StructureTree::kDocument);
}

void BlockTagger::tagParagraph(bool isEmpty)
{
    if (isEmpty) {
        if (!m_heading)
            closeTable();
        return;
    }
    last(BlockKind::Paragraph) = {m_tree.create(StructureRole::P)};
    place(last(BlockKind::Paragraph).front());
}

void BlockTagger::tagHeadingRow(const Page &page, size_t block)
{
    const int columns = std::max<int>(page.blocks[block].columnCount, 1);
    const QString heading = lettersOf(page, block);
    if (m_table && columns == m_columns && heading == m_heading)
        return;
    closeTable();
    openTable(columns);
    m_heading = heading;
    addCells(StructureRole::TH, columns);
}

void BlockTagger::tagRow(int columns)
{
    if (m_table && (!m_heading ? columns != m_columns : columns > m_columns))
        closeTable();
    if (!m_table)
        openTable(columns);
    takeWaitingIn();
    addCells(StructureRole::TD, columns);
}

void BlockTagger::tagCaption(const Page &page, size_t block)
{
    if (!m_heading)
        closeTable();
    takeWaitingIn();
    const Id heading = m_tree.create(headingRole(lettersOf(page, block)));
    m_tree.attach(heading, m_table ? addWideCell() : StructureTree::kDocument);
    last(BlockKind::Caption).assign(page.blocks[block].columnCount, heading);
}

void BlockTagger::openTable(int columns)
{
    m_table = m_tree.add(StructureRole::Table, StructureTree::kDocument);
    m_columns = columns;
}

void BlockTagger::closeTable()
{
    for (const Id element : m_waiting)
        m_tree.attach(element, StructureTree::kDocument);
    m_waiting.clear();
    m_table.reset();
    m_heading.reset();
}

/// What waited stands above another row of the table, and so in it.
void BlockTagger::takeWaitingIn()
{
    if (m_waiting.empty())
        return;
    const Id cell = addWideCell();
    for (const Id element : m_waiting)
        m_tree.attach(element, cell);
    m_waiting.clear();
}

StructureTree::Id BlockTagger::addWideCell()
{
    const Id cell = m_tree.add(StructureRole::TD, m_tree.add(StructureRole::TR, *m_table));
    m_tree.setColumnSpan(cell, m_columns);
    return cell;
}

void BlockTagger::addCells(StructureRole role, int columns)
{
    std::vector<Id> &cells = last(role == StructureRole::TH ? BlockKind::HeadingRow : BlockKind::Row);
    const Id row = m_tree.add(StructureRole::TR, *m_table);
    for (int i = 0; i < columns; ++i)
        cells.push_back(m_tree.add(role, row));
    m_tree.setColumnSpan(cells.back(), m_columns - columns + 1);
}

/// A caption that the outline names is as deep as it is there.
StructureRole BlockTagger::headingRole(const QString &title)
{
    const bool isNamed = m_nextEntry < m_levels.size() && m_document.outline[m_nextEntry].title.simplified() == title;
    const int level = isNamed ? m_levels[m_nextEntry++] : 0;
    return StructureRole(int(StructureRole::H1) + std::min(level, kDeepestHeading - 1));
}

} // namespace corvane

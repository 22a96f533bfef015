#pragma once

#include "platform/composer/document.h"
#include "platform/pdf/structure_tree.h"

namespace corvane {

/// Decides where the blocks of a document stand in its structure. A heading row governs everything down
/// to the last row before another heading: captions, notes and totals between become rows of its table,
/// so that every cell keeps its headings. Without one, rows of equal columns that follow each other are
/// a table.
class BlockTagger
{
public:
    BlockTagger(const Document &document, StructureTree &tree);

    /// The elements of a block by column, for blocks in their order; none for what is no part of the
    /// text: a heading row that only repeats the table's, a report's own page header. Valid until the next call.
    std::span<const StructureTree::Id> tag(const Page &page, size_t block);
    /// Gives an element that is no block its place behind what came so far.
    void place(StructureTree::Id element);
    /// To be called behind the last block.
    void finish() { closeTable(); }

private:
    using Id = StructureTree::Id;

    void tagParagraph(bool isEmpty);
    void tagHeadingRow(const Page &page, size_t block);
    void tagRow(int columns);
    void tagCaption(const Page &page, size_t block);
    void openTable(int columns);
    void closeTable();
    void takeWaitingIn();
    Id addWideCell();
    void addCells(StructureRole role, int columns);
    StructureRole headingRole(const QString &title);
    std::vector<Id> &last(BlockKind kind) { return m_last[size_t(kind)]; }

    const Document &m_document;
    StructureTree &m_tree;
    std::array<std::vector<Id>, 5> m_last; ///< by kind: what a continued block goes on with
    std::optional<Id> m_table;
    int m_columns = 0; ///< of the table
    std::optional<QString> m_heading; ///< letters of the table's heading row, if it has one
    std::vector<Id> m_waiting; ///< between rows, or behind the table: the next row tells
    std::vector<int> m_levels; ///< of the outline's entries
    size_t m_nextEntry = 0;
};

} // namespace corvane

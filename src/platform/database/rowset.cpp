#include "platform/database/rowset.h"

#include "platform/database/error.h"

#include <algorithm>

namespace corvane {

namespace {
constexpr size_t kArenaBlock = 1 << 20;
}

int Rowset::fieldIndex(QStringView name) const
{
    for (int i = 0; i < fieldCount(); ++i) {
        if (name.compare(m_fieldNames[i], Qt::CaseInsensitive) == 0)
            return i;
    }
    return -1;
}

void Rowset::throwNoSuchField(int field) const
{
    throw DatabaseError(3265, QStringLiteral("The query returns %1 fields (ordinals 0 to %2), so there is no field %3.")
                                  .arg(fieldCount())
                                  .arg(fieldCount() - 1)
                                  .arg(field));
}

RowsetBuilder::RowsetBuilder(QStringList fieldNames)
    : m_rowset(std::make_unique<Rowset>())
{
    m_rowset->m_fieldNames = std::move(fieldNames);
    m_block = &m_rowset->m_cells.emplace_back();
}

qsizetype RowsetBuilder::rowCount() const
{
    const int fields = m_rowset ? m_rowset->fieldCount() : 0;
    return fields == 0 ? 0 : qsizetype(cellCount() / size_t(fields));
}

RowsetPtr RowsetBuilder::finish()
{
    m_rowset->m_rowCount = rowCount();
    m_block = nullptr;
    m_free = nullptr;
    m_freeBytes = 0;
    return RowsetPtr(std::move(m_rowset));
}

/// The first block grows with the rows, so that a small result stays small.
void RowsetBuilder::startBlock()
{
    m_block = &m_rowset->m_cells.emplace_back();
    m_block->reserve(Rowset::kCellsPerBlock);
}

void RowsetBuilder::startArena(size_t size)
{
    const size_t block = std::max(size, kArenaBlock);
    m_rowset->m_arena.push_back(std::make_unique_for_overwrite<char[]>(block));
    m_free = m_rowset->m_arena.back().get();
    m_freeBytes = block;
}

size_t RowsetBuilder::cellCount() const
{
    return (m_rowset->m_cells.size() - 1) * Rowset::kCellsPerBlock + m_block->size();
}

} // namespace corvane

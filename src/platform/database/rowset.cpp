#include "platform/database/rowset.h"

#include "platform/database/error.h"

#include <cstring>

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

qsizetype Rowset::byteSize() const
{
    return qsizetype(m_cells.size() * kCellsPerBlock * sizeof(Value)) + m_arenaBytes;
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
}

void RowsetBuilder::add(const Value &value)
{
    if (m_cellCount % Rowset::kCellsPerBlock == 0) {
        m_rowset->m_cells.emplace_back();
        if (m_cellCount > 0)
            m_rowset->m_cells.back().reserve(Rowset::kCellsPerBlock);
    }
    ++m_cellCount;
    auto &block = m_rowset->m_cells.back();
    const QByteArrayView data = value.data();
    const auto length = quint32(data.size());
    switch (value.kind()) {
    case ValueKind::Text:
        block.push_back(Value::text(keep(data), length));
        break;
    case ValueKind::Decimal:
        block.push_back(Value::decimal(keep(data), length));
        break;
    case ValueKind::Bytes:
        block.push_back(Value::bytes(keep(data), length));
        break;
    default:
        block.push_back(value);
    }
}

qsizetype RowsetBuilder::rowCount() const
{
    const int fields = m_rowset->fieldCount();
    return fields == 0 ? 0 : qsizetype(m_cellCount / size_t(fields));
}

RowsetPtr RowsetBuilder::finish()
{
    m_rowset->m_rowCount = rowCount();
    m_cellCount = 0;
    m_free = nullptr;
    m_freeBytes = 0;
    return RowsetPtr(std::move(m_rowset));
}

const char *RowsetBuilder::keep(QByteArrayView bytes)
{
    const auto size = size_t(bytes.size());
    if (size > m_freeBytes) {
        const size_t block = std::max(size, kArenaBlock);
        m_rowset->m_arena.push_back(std::make_unique_for_overwrite<char[]>(block));
        m_rowset->m_arenaBytes += qsizetype(block);
        m_free = m_rowset->m_arena.back().get();
        m_freeBytes = block;
    }
    char *copy = m_free;
    std::memcpy(copy, bytes.data(), size);
    m_free += size;
    m_freeBytes -= size;
    return copy;
}

} // namespace corvane

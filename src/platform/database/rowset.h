#pragma once

#include "platform/database/value.h"

#include <QtCore/QStringList>

#include <cstring>
#include <memory>
#include <vector>

namespace corvane {

/// The complete result of one query, read once and never changed; rows and fields count from 0.
class Rowset
{
public:
    qsizetype rowCount() const { return m_rowCount; }
    int fieldCount() const { return int(m_fieldNames.size()); }
    const QStringList &fieldNames() const { return m_fieldNames; }

    /// The first field of that name, without regard to case; -1 when there is none.
    int fieldIndex(QStringView name) const;

    /// The cell; DatabaseError 3265 for a field that the result does not have.
    Value value(qsizetype row, int field) const
    {
        if (field < 0 || field >= fieldCount())
            throwNoSuchField(field);
        const auto at = size_t(row) * size_t(fieldCount()) + size_t(field);
        return m_cells[at / kCellsPerBlock][at % kCellsPerBlock];
    }

private:
    friend class RowsetBuilder;
    static constexpr size_t kCellsPerBlock = 1 << 16;

    [[noreturn]] void throwNoSuchField(int field) const;

    QStringList m_fieldNames;
    qsizetype m_rowCount = 0;
    std::vector<std::vector<Value>> m_cells;
    std::vector<std::unique_ptr<char[]>> m_arena;
};

using RowsetPtr = std::shared_ptr<const Rowset>;

/// Collects a rowset cell by cell, row after row; text and bytes are copied.
class RowsetBuilder
{
public:
    explicit RowsetBuilder(QStringList fieldNames);

    void add(const Value &value)
    {
        switch (value.kind()) {
        case ValueKind::Text:
            return addText(value.data());
        case ValueKind::Decimal:
            return place(Value::decimal(keep(value.data()), quint32(value.data().size())));
        case ValueKind::Bytes:
            return place(Value::bytes(keep(value.data()), quint32(value.data().size())));
        default:
            place(value);
        }
    }
    void addText(QByteArrayView utf8) { place(Value::text(keep(utf8), quint32(utf8.size()))); }

    qsizetype rowCount() const;

    /// Hands the rowset over; the builder is empty afterwards. A started row is dropped.
    RowsetPtr finish();

private:
    void place(const Value &value)
    {
        if (m_block->size() == Rowset::kCellsPerBlock)
            startBlock();
        m_block->push_back(value);
    }

    const char *keep(QByteArrayView bytes)
    {
        const auto size = size_t(bytes.size());
        if (size == 0)
            return "";
        if (size > m_freeBytes)
            startArena(size);
        char *copy = m_free;
        std::memcpy(copy, bytes.data(), size);
        m_free += size;
        m_freeBytes -= size;
        return copy;
    }

    void startBlock();
    void startArena(size_t size);
    size_t cellCount() const;

    std::unique_ptr<Rowset> m_rowset;
    std::vector<Value> *m_block = nullptr; ///< the last of the rowset's blocks
    char *m_free = nullptr;
    size_t m_freeBytes = 0;
};

} // namespace corvane

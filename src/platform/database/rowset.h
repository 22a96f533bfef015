#pragma once

#include "platform/database/value.h"

#include <QtCore/QStringList>

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

    /// Memory held, in bytes.
    qsizetype byteSize() const;

private:
    friend class RowsetBuilder;
    static constexpr size_t kCellsPerBlock = 1 << 16;

    [[noreturn]] void throwNoSuchField(int field) const;

    QStringList m_fieldNames;
    qsizetype m_rowCount = 0;
    std::vector<std::vector<Value>> m_cells;
    std::vector<std::unique_ptr<char[]>> m_arena;
    qsizetype m_arenaBytes = 0;
};

using RowsetPtr = std::shared_ptr<const Rowset>;

/// Collects a rowset cell by cell, row after row; text and bytes are copied.
class RowsetBuilder
{
public:
    explicit RowsetBuilder(QStringList fieldNames);

    void add(const Value &value);
    void addText(QByteArrayView utf8) { add(Value::text(utf8.data(), quint32(utf8.size()))); }

    qsizetype rowCount() const;

    /// Hands the rowset over; the builder is empty afterwards. A started row is dropped.
    RowsetPtr finish();

private:
    const char *keep(QByteArrayView bytes);

    std::unique_ptr<Rowset> m_rowset;
    size_t m_cellCount = 0;
    char *m_free = nullptr;
    size_t m_freeBytes = 0;
};

} // namespace corvane

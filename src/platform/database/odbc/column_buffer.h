#pragma once

#include "platform/database/odbc/handles.h"
#include "platform/database/rowset.h"

#include <vector>

namespace corvane::odbc {

/// What the driver says of one column of a result.
struct Column
{
    QString name;
    SQLSMALLINT sqlType = 0;
    ValueKind kind = ValueKind::Text;
    bool isShortReal = false; ///< four bytes, seven digits
    size_t characters = 0; ///< the longest value; 0: no useful bound
};

/// The kind of value for a type number: the standard's, and SQL Server's own for time and others.
ValueKind kindOfSqlType(int sqlType);

/// @throws DatabaseError when the driver cannot describe it.
Column describeColumn(const Statement &statement, SQLUSMALLINT number, const QString &password);

/// The cells of one column in a block of rows: the place that the driver writes to.
class ColumnBuffer
{
public:
    /// A column without a bound gets places of moderate length; longer values are read one by one.
    explicit ColumnBuffer(const Column &column);

    size_t bytesPerRow() const { return m_cellBytes + sizeof(SQLLEN); }
    void allocate(size_t rows);
    SQLSMALLINT cType() const { return m_cType; }
    SQLRETURN bind(const Statement &statement, SQLUSMALLINT number);

    /// Whether the cell is longer than its place.
    bool isCut(size_t row) const;
    /// Adds the cell; not for one that is cut.
    void add(RowsetBuilder &builder, size_t row) const;
    /// Adds a value that was read piece by piece, in this column's form; null: a database null.
    void addWhole(RowsetBuilder &builder, const std::vector<char> *bytes) const;

private:
    void addBytes(RowsetBuilder &builder, const char *data, size_t size) const;

    ValueKind m_kind;
    SQLSMALLINT m_cType;
    size_t m_cellBytes;
    std::vector<char> m_data;
    std::vector<SQLLEN> m_lengths;
};

} // namespace corvane::odbc

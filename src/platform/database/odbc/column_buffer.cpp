#include "platform/database/odbc/column_buffer.h"

#include "platform/database/odbc/cell_values.h"
#include "platform/database/odbc/diagnostics.h"

#include <algorithm>

namespace corvane::odbc {

namespace {

// SQL Server's own types; its drivers report them, no header of the standard names them.
constexpr int kServerTime = -154;
constexpr int kServerXml = -152;
constexpr int kServerVariant = -150;

constexpr size_t kLongestBound = 8'000; // what a bounded text of SQL Server may have
constexpr size_t kModerate = 256;
constexpr size_t kDigits = 80; // exact decimals have 38, and what stands around them

bool isLongType(int sqlType)
{
    return sqlType == SQL_LONGVARCHAR || sqlType == SQL_WLONGVARCHAR || sqlType == SQL_LONGVARBINARY
        || sqlType == kServerXml || sqlType == kServerVariant;
}

SQLSMALLINT cTypeFor(const Column &column)
{
    switch (column.kind) {
    case ValueKind::Integer:
        return SQL_C_SBIGINT;
    case ValueKind::Boolean:
        return SQL_C_BIT;
    case ValueKind::Real:
        return column.isShortReal ? SQL_C_FLOAT : SQL_C_DOUBLE;
    case ValueKind::Date:
        return SQL_C_TYPE_DATE;
    case ValueKind::DateTime:
        return SQL_C_TYPE_TIMESTAMP;
    case ValueKind::Decimal:
    case ValueKind::Time: // the standard's structure has no parts of a second
        return SQL_C_CHAR;
    case ValueKind::Bytes:
        return SQL_C_BINARY;
    default:
        return SQL_C_WCHAR;
    }
}

size_t cellBytesFor(const Column &column)
{
    const size_t characters = column.characters == 0 ? kModerate : column.characters;
    switch (column.kind) {
    case ValueKind::Integer:
        return sizeof(SQLBIGINT);
    case ValueKind::Boolean:
        return sizeof(SQLCHAR);
    case ValueKind::Real:
        return column.isShortReal ? sizeof(SQLREAL) : sizeof(SQLDOUBLE);
    case ValueKind::Date:
        return sizeof(SQL_DATE_STRUCT);
    case ValueKind::DateTime:
        return sizeof(SQL_TIMESTAMP_STRUCT);
    case ValueKind::Decimal:
    case ValueKind::Time:
        return kDigits;
    case ValueKind::Bytes:
        return characters;
    default:
        // A character beyond the first plane takes two units, and the text a closing null.
        return (2 * characters + 1) * sizeof(SQLWCHAR);
    }
}

template <typename T> T read(const char *data)
{
    T value;
    std::memcpy(&value, data, sizeof value);
    return value;
}

} // namespace

ValueKind kindOfSqlType(int sqlType)
{
    switch (sqlType) {
    case SQL_INTEGER:
    case SQL_SMALLINT:
    case SQL_BIGINT:
    case SQL_TINYINT:
        return ValueKind::Integer;
    case SQL_BIT:
        return ValueKind::Boolean;
    case SQL_NUMERIC:
    case SQL_DECIMAL:
        return ValueKind::Decimal;
    case SQL_FLOAT:
    case SQL_REAL:
    case SQL_DOUBLE:
        return ValueKind::Real;
    case SQL_DATE:
    case SQL_TYPE_DATE:
        return ValueKind::Date;
    case SQL_TIME:
    case SQL_TYPE_TIME:
    case kServerTime:
        return ValueKind::Time;
    case SQL_TIMESTAMP:
    case SQL_TYPE_TIMESTAMP:
        return ValueKind::DateTime;
    case SQL_BINARY:
    case SQL_VARBINARY:
    case SQL_LONGVARBINARY:
        return ValueKind::Bytes;
    default:
        return ValueKind::Text;
    }
}

Column describeColumn(const Statement &statement, SQLUSMALLINT number, const QString &password)
{
    SQLWCHAR name[512];
    SQLSMALLINT length = 0;
    SQLSMALLINT type = 0;
    SQLSMALLINT digits = 0;
    SQLSMALLINT nullable = 0;
    SQLULEN size = 0;
    if (!SQL_SUCCEEDED(SQLDescribeColW(statement.get(), number, name, SQLSMALLINT(std::size(name)),
            &length, &type, &size, &digits, &nullable)))
        throw failureOf(diagnostics(SQL_HANDLE_STMT, statement.get()), password, Phase::Running);
    const int kept = std::clamp<int>(length, 0, int(std::size(name)) - 1);
    Column column;
    column.name = QString::fromUtf16(reinterpret_cast<char16_t *>(name), kept);
    column.sqlType = type;
    column.kind = kindOfSqlType(type);
    column.isShortReal = type == SQL_REAL;
    column.characters = isLongType(type) || size > kLongestBound ? 0 : size_t(size);
    return column;
}

ColumnBuffer::ColumnBuffer(const Column &column)
    : m_kind(column.kind)
    , m_cType(cTypeFor(column))
    , m_cellBytes(cellBytesFor(column))
{
}

void ColumnBuffer::allocate(size_t rows)
{
    m_data.resize(rows * m_cellBytes);
    m_lengths.resize(rows);
}

SQLRETURN ColumnBuffer::bind(const Statement &statement, SQLUSMALLINT number)
{
    return SQLBindCol(
        statement.get(), number, m_cType, m_data.data(), SQLLEN(m_cellBytes), m_lengths.data());
}

bool ColumnBuffer::isCut(size_t row) const
{
    const SQLLEN length = m_lengths[row];
    if (length == SQL_NULL_DATA
        || (m_cType != SQL_C_WCHAR && m_cType != SQL_C_CHAR && m_cType != SQL_C_BINARY))
        return false;
    const size_t closing = m_cType == SQL_C_WCHAR ? sizeof(SQLWCHAR)
        : m_cType == SQL_C_CHAR                   ? 1
                                                  : 0;
    return length < 0 || size_t(length) + closing > m_cellBytes;
}

void ColumnBuffer::add(RowsetBuilder &builder, size_t row) const
{
    if (m_lengths[row] == SQL_NULL_DATA)
        return builder.add(Value());
    addBytes(builder, m_data.data() + row * m_cellBytes, size_t(m_lengths[row]));
}

void ColumnBuffer::addWhole(RowsetBuilder &builder, const std::vector<char> *bytes) const
{
    if (!bytes)
        return builder.add(Value());
    addBytes(builder, bytes->data(), bytes->size());
}

void ColumnBuffer::addBytes(RowsetBuilder &builder, const char *data, size_t size) const
{
    switch (m_kind) {
    case ValueKind::Integer:
        return builder.add(Value::integer(read<SQLBIGINT>(data)));
    case ValueKind::Boolean:
        return builder.add(Value::boolean(*data != 0));
    case ValueKind::Real:
        return builder.add(Value::real(
            m_cType == SQL_C_FLOAT ? shortestReal(read<SQLREAL>(data)) : read<SQLDOUBLE>(data)));
    case ValueKind::Date:
        return builder.add(Value::date(epochDay(read<SQL_DATE_STRUCT>(data))));
    case ValueKind::DateTime:
        return builder.add(Value::dateTime(epochMs(read<SQL_TIMESTAMP_STRUCT>(data))));
    case ValueKind::Decimal:
        return addDecimal(builder, QByteArrayView(data, qsizetype(size)));
    case ValueKind::Time:
        return addTime(builder, QByteArrayView(data, qsizetype(size)));
    case ValueKind::Bytes:
        return builder.add(Value::bytes(data, quint32(size)));
    default:
        addText(builder,
            QStringView(
                reinterpret_cast<const char16_t *>(data), qsizetype(size / sizeof(char16_t))));
    }
}

} // namespace corvane::odbc

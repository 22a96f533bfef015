#include "platform/database/odbc/fetch.h"

#include "platform/database/odbc/column_buffer.h"
#include "platform/database/odbc/diagnostics.h"

#include <algorithm>

namespace corvane::odbc {

namespace {

constexpr size_t kBlockBytes = size_t(512) * 1024; // stays in the processor's cache
constexpr size_t kMostRows = 2'000;
constexpr size_t kPiece = size_t(16) * 1024;

class ResultReader
{
public:
    ResultReader(const Session &session, const Statement &statement, const QString &password)
        : m_session(session)
        , m_statement(statement)
        , m_password(password)
    {
    }

    /// Moves on to a result with columns; false when there is none.
    bool findColumns();
    RowsetPtr readRows();

private:
    void describe();
    void bindBlock();
    /// How many rows the next block has; 0 at the end.
    size_t fetchBlock();
    void checkAlive() const;
    void addCell(RowsetBuilder &builder, size_t column, size_t row);
    void addInPieces(RowsetBuilder &builder, size_t column, size_t row);
    bool nextResult();
    SQLUINTEGER readingExtensions() const;
    void check(SQLRETURN code) const
    {
        if (!SQL_SUCCEEDED(code))
            fail();
    }
    [[noreturn]] void fail() const { throw failureOf(reports(), m_password, Phase::Running); }
    std::vector<Diagnostic> reports() const
    {
        return diagnostics(SQL_HANDLE_STMT, m_statement.get());
    }

    const Session &m_session;
    const Statement &m_statement;
    const QString &m_password;
    std::vector<Column> m_columns;
    std::vector<ColumnBuffer> m_buffers;
    size_t m_boundColumns = 0; ///< from the left; the others are read one by one
    size_t m_rowsPerBlock = 1;
    SQLULEN m_rowsFetched = 0;
    std::vector<SQLUSMALLINT> m_rowStates;
};

bool ResultReader::findColumns()
{
    for (;;) {
        SQLSMALLINT columns = 0;
        check(SQLNumResultCols(m_statement.get(), &columns));
        if (columns > 0) {
            m_columns.resize(size_t(columns));
            return true;
        }
        if (!nextResult())
            return false;
    }
}

bool ResultReader::nextResult()
{
    const SQLRETURN code = SQLMoreResults(m_statement.get());
    if (code == SQL_NO_DATA)
        return false;
    check(code);
    return true;
}

void ResultReader::describe()
{
    for (size_t i = 0; i < m_columns.size(); ++i) {
        m_columns[i] = describeColumn(m_statement, SQLUSMALLINT(i + 1), m_password);
        m_buffers.emplace_back(m_columns[i]);
    }
}

SQLUINTEGER ResultReader::readingExtensions() const
{
    SQLUINTEGER extensions = 0;
    SQLGetInfoW(m_session.get(), SQL_GETDATA_EXTENSIONS, &extensions, sizeof extensions, nullptr);
    return extensions;
}

/// Blocks of rows where every long value can be read again out of its block; else a row at a time,
/// with the long columns and what stands behind them read one by one, in order.
void ResultReader::bindBlock()
{
    const auto unbounded = std::ranges::find(m_columns, size_t(0), &Column::characters);
    constexpr SQLUINTEGER kAnywhere
        = SQL_GD_BLOCK | SQL_GD_BOUND | SQL_GD_ANY_COLUMN | SQL_GD_ANY_ORDER;
    const bool inBlocks
        = unbounded == m_columns.end() || (readingExtensions() & kAnywhere) == kAnywhere;
    m_boundColumns = inBlocks ? m_columns.size() : size_t(unbounded - m_columns.begin());
    size_t bytes = 0;
    for (const ColumnBuffer &buffer : m_buffers)
        bytes += buffer.bytesPerRow();
    m_rowsPerBlock = inBlocks ? std::clamp<size_t>(kBlockBytes / bytes, 1, kMostRows) : 1;
    m_rowStates.resize(m_rowsPerBlock);

    const SQLHSTMT handle = m_statement.get();
    check(SQLSetStmtAttr(handle, SQL_ATTR_ROW_BIND_TYPE, attribute(SQL_BIND_BY_COLUMN), 0));
    check(SQLSetStmtAttr(handle, SQL_ATTR_ROW_ARRAY_SIZE, attribute(m_rowsPerBlock), 0));
    check(SQLSetStmtAttr(handle, SQL_ATTR_ROWS_FETCHED_PTR, &m_rowsFetched, 0));
    check(SQLSetStmtAttr(handle, SQL_ATTR_ROW_STATUS_PTR, m_rowStates.data(), 0));
    for (size_t i = 0; i < m_columns.size(); ++i) {
        m_buffers[i].allocate(m_rowsPerBlock);
        if (i < m_boundColumns)
            check(m_buffers[i].bind(m_statement, SQLUSMALLINT(i + 1)));
    }
}

size_t ResultReader::fetchBlock()
{
    const SQLRETURN code = SQLFetch(m_statement.get());
    if (code == SQL_NO_DATA) {
        if (holdsFailure(reports()))
            fail();
        checkAlive();
        return 0;
    }
    check(code);
    // FreeTDS reports an error among the rows beside the last block of them, and an end next.
    if (code == SQL_SUCCESS_WITH_INFO && holdsFailure(reports()))
        fail();
    const size_t rows = std::min<size_t>(m_rowsFetched, m_rowsPerBlock);
    if (std::find(m_rowStates.begin(), m_rowStates.begin() + qsizetype(rows), SQL_ROW_ERROR)
        != m_rowStates.begin() + qsizetype(rows))
        fail();
    return rows;
}

/// A driver that takes the end of the connection for the end of the rows knows at least the former.
void ResultReader::checkAlive() const
{
    SQLULEN isDead = SQL_CD_FALSE; // drivers write four or eight bytes
    SQLGetConnectAttrW(m_session.get(), SQL_ATTR_CONNECTION_DEAD, &isDead, 0, nullptr);
    if (isDead == SQL_CD_TRUE)
        throw DatabaseError(kConnectionError,
            QStringLiteral("The connection broke before the last row."), FailureCause::Lost);
}

RowsetPtr ResultReader::readRows()
{
    describe();
    bindBlock();
    QStringList names;
    for (const Column &column : m_columns)
        names += column.name;
    RowsetBuilder builder(std::move(names));
    while (const size_t rows = fetchBlock()) {
        for (size_t row = 0; row < rows; ++row)
            for (size_t column = 0; column < m_columns.size(); ++column)
                addCell(builder, column, row);
    }
    nextResult();
    return builder.finish();
}

void ResultReader::addCell(RowsetBuilder &builder, size_t column, size_t row)
{
    const ColumnBuffer &buffer = m_buffers[column];
    if (column < m_boundColumns && !buffer.isCut(row))
        return buffer.add(builder, row);
    addInPieces(builder, column, row);
}

void ResultReader::addInPieces(RowsetBuilder &builder, size_t column, size_t row)
{
    const ColumnBuffer &buffer = m_buffers[column];
    if (m_rowsPerBlock > 1)
        check(
            SQLSetPos(m_statement.get(), SQLSETPOSIROW(row + 1), SQL_POSITION, SQL_LOCK_NO_CHANGE));
    const size_t closing = buffer.cType() == SQL_C_WCHAR ? sizeof(SQLWCHAR)
        : buffer.cType() == SQL_C_CHAR                   ? 1
                                                         : 0;
    std::vector<char> value;
    for (;;) {
        const size_t before = value.size();
        value.resize(before + kPiece);
        SQLLEN length = 0;
        const SQLRETURN code = SQLGetData(m_statement.get(), SQLUSMALLINT(column + 1),
            buffer.cType(), value.data() + before, SQLLEN(kPiece), &length);
        if (code == SQL_NO_DATA) {
            value.resize(before);
            break;
        }
        check(code);
        if (length == SQL_NULL_DATA)
            return buffer.addWhole(builder, nullptr);
        const bool more = length == SQL_NO_TOTAL || size_t(length) + closing > kPiece;
        value.resize(before + (more ? kPiece - closing : size_t(length)));
        if (!more)
            break;
    }
    buffer.addWhole(builder, &value);
}

} // namespace

RowsetPtr fetchResult(const Session &session, const Statement &statement, const QString &password)
{
    ResultReader reader(session, statement, password);
    return reader.findColumns() ? reader.readRows() : RowsetBuilder({}).finish();
}

} // namespace corvane::odbc

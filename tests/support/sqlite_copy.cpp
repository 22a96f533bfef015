#include "support/sqlite_copy.h"

#include <QtCore/QByteArrayList>

#include <sqlite3.h>

#include <memory>

namespace corvane::test {

namespace {

using Database = std::unique_ptr<sqlite3, decltype(&sqlite3_close)>;
using Statement = std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)>;

Statement prepared(sqlite3 *database, const QByteArray &sql)
{
    sqlite3_stmt *statement = nullptr;
    sqlite3_prepare_v2(database, sql.constData(), int(sql.size()), &statement, nullptr);
    return {statement, &sqlite3_finalize};
}

QByteArray text(sqlite3_stmt *statement, int column)
{
    const auto *data = reinterpret_cast<const char *>(sqlite3_column_text(statement, column));
    return {data, sqlite3_column_bytes(statement, column)};
}

QByteArray typeOf(const QByteArray &declared)
{
    if (declared == "datetime")
        return "timestamp";
    return declared == "bit" ? "boolean" : declared;
}

QByteArray createTable(sqlite3 *database, const QByteArray &table)
{
    QByteArrayList columns;
    const Statement info = prepared(database, "PRAGMA table_info(" + table + ')');
    while (sqlite3_step(info.get()) == SQLITE_ROW) {
        const bool isKey = sqlite3_column_int(info.get(), 5) != 0;
        columns += text(info.get(), 1) + ' ' + typeOf(text(info.get(), 2).toLower())
            + (isKey ? " PRIMARY KEY" : "");
    }
    return "CREATE TABLE dbo." + table + " (" + columns.join(", ") + ");\n";
}

/// A cell of the COPY text format, https://www.postgresql.org/docs/15/sql-copy.html
QByteArray cell(sqlite3_stmt *row, int column)
{
    if (sqlite3_column_type(row, column) == SQLITE_NULL)
        return "\\N";
    return text(row, column)
        .replace('\\', "\\\\")
        .replace('\t', "\\t")
        .replace('\n', "\\n")
        .replace('\r', "\\r");
}

void appendRows(sqlite3 *database, const QByteArray &table, QByteArray &statements)
{
    statements += "COPY dbo." + table + " FROM STDIN;\n";
    const Statement rows = prepared(database, "SELECT * FROM " + table);
    const int columns = sqlite3_column_count(rows.get());
    while (sqlite3_step(rows.get()) == SQLITE_ROW) {
        for (int i = 0; i < columns; ++i)
            statements += cell(rows.get(), i) + (i + 1 < columns ? '\t' : '\n');
    }
    statements += "\\.\n";
}

} // namespace

QString copyStatements(const QString &sqliteFile, QByteArray &statements)
{
    sqlite3 *handle = nullptr;
    sqlite3_open_v2(sqliteFile.toUtf8().constData(), &handle, SQLITE_OPEN_READONLY, nullptr);
    const Database database(handle, &sqlite3_close);
    const Statement tables
        = prepared(handle, "SELECT name FROM sqlite_master WHERE type = 'table' ORDER BY name");
    while (sqlite3_step(tables.get()) == SQLITE_ROW) {
        const QByteArray table = text(tables.get(), 0);
        statements += createTable(handle, table);
        appendRows(handle, table, statements);
    }
    return statements.isEmpty() ? QString::fromUtf8(sqlite3_errmsg(handle)) : QString();
}

} // namespace corvane::test

#include "demo/sql_script.h"

#include <QtCore/QByteArrayList>

#include <sqlite3.h>

#include <memory>
#include <stdexcept>

namespace corvane::demo {

namespace {

constexpr int kRowsPerInsert = 1'000; // the most that the server takes in one

using Database = std::unique_ptr<sqlite3, decltype(&sqlite3_close)>;
using Statement = std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)>;

/// The file's bytes as a read-only database; they must outlive it.
Database opened(const QByteArray &file)
{
    sqlite3 *handle = nullptr;
    const int opening = sqlite3_open(":memory:", &handle);
    Database database(handle, &sqlite3_close);
    auto *bytes = reinterpret_cast<unsigned char *>(const_cast<char *>(file.constData()));
    if (opening != SQLITE_OK
        || sqlite3_deserialize(
               handle, "main", bytes, file.size(), file.size(), SQLITE_DESERIALIZE_READONLY)
            != SQLITE_OK)
        throw std::runtime_error(handle ? sqlite3_errmsg(handle) : "out of memory");
    return database;
}

Statement prepared(sqlite3 *database, const QByteArray &sql)
{
    sqlite3_stmt *statement = nullptr;
    if (sqlite3_prepare_v2(database, sql.constData(), int(sql.size()), &statement, nullptr)
        != SQLITE_OK)
        throw std::runtime_error(sqlite3_errmsg(database));
    return {statement, &sqlite3_finalize};
}

QByteArray text(sqlite3_stmt *row, int column)
{
    const auto *data = reinterpret_cast<const char *>(sqlite3_column_text(row, column));
    return {data, sqlite3_column_bytes(row, column)};
}

/// Names compare without case and passwords exactly, whatever the server's own collation is.
QByteArray serverDefinition(QByteArray sql)
{
    return sql.replace("CREATE TABLE ", "CREATE TABLE dbo.")
        .replace(" varchar(", " nvarchar(")
        .replace("COLLATE NOCASE", "COLLATE Latin1_General_CI_AS")
        .replace("COLLATE BINARY", "COLLATE Latin1_General_BIN2");
}

/// Date-times with a "T" are read alike whatever language the logon has.
QByteArray literal(sqlite3_stmt *row, int column)
{
    if (sqlite3_column_type(row, column) == SQLITE_NULL)
        return "NULL";
    const QByteArray declared(sqlite3_column_decltype(row, column));
    if (declared.startsWith("decimal"))
        return QByteArray::number(sqlite3_column_double(row, column), 'f', 2);
    QByteArray value = text(row, column);
    if (declared == "datetime")
        return '\'' + value.left(10) + 'T' + (value.size() > 11 ? value.mid(11) : "00:00:00")
            + '\'';
    if (declared == "date")
        return '\'' + value + '\'';
    if (declared.startsWith("varchar"))
        return "N'" + QByteArray(value).replace('\'', "''") + '\'';
    return value;
}

void appendRows(QByteArray &script, sqlite3 *database, const QByteArray &table)
{
    const Statement rows = prepared(database, "SELECT * FROM " + table);
    const int columns = sqlite3_column_count(rows.get());
    for (int count = 0; sqlite3_step(rows.get()) == SQLITE_ROW; ++count) {
        if (count % kRowsPerInsert == 0)
            script += (count == 0 ? "" : ";\nGO\n") + ("INSERT INTO dbo." + table) + " VALUES\n(";
        else
            script += ",\n(";
        for (int i = 0; i < columns; ++i)
            script += (i == 0 ? "" : ", ") + literal(rows.get(), i);
        script += ')';
    }
    script += ";\nGO\n";
}

} // namespace

QByteArray sqlScript(const QByteArray &name, const QByteArray &databaseFile)
{
    const Database database = opened(databaseFile);
    QByteArray script
        = "CREATE DATABASE " + name + ";\nGO\nUSE " + name + ";\nGO\nSET NOCOUNT ON;\nGO\n";
    const Statement objects = prepared(database.get(),
        "SELECT type, name, sql FROM sqlite_master WHERE sql IS NOT NULL ORDER BY type DESC, "
        "rowid");
    while (sqlite3_step(objects.get()) == SQLITE_ROW) {
        script += serverDefinition(text(objects.get(), 2)) + ";\nGO\n";
        if (text(objects.get(), 0) == "table")
            appendRows(script, database.get(), text(objects.get(), 1));
    }
    return script;
}

} // namespace corvane::demo

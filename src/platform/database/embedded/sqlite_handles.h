#pragma once

#include "platform/database/error.h"

#include <sqlite3.h>

#include <memory>

namespace corvane::embedded {

struct CloseDatabase
{
    void operator()(sqlite3 *database) const { sqlite3_close_v2(database); }
};
struct FinalizeStatement
{
    void operator()(sqlite3_stmt *statement) const { sqlite3_finalize(statement); }
};

using DatabaseHandle = std::unique_ptr<sqlite3, CloseDatabase>;
using StatementHandle = std::unique_ptr<sqlite3_stmt, FinalizeStatement>;

/// SQLite's number and words for the latest failure of the connection.
inline DatabaseError latestError(sqlite3 *database, FailureCause cause = FailureCause::Unknown)
{
    return {sqlite3_errcode(database), QString::fromUtf8(sqlite3_errmsg(database)), cause};
}

/// Null when the statement is wrong; latestError() knows why.
inline StatementHandle prepared(sqlite3 *database, const QByteArray &sql)
{
    sqlite3_stmt *statement = nullptr;
    sqlite3_prepare_v3(database, sql.constData(), int(sql.size()), 0, &statement, nullptr);
    return StatementHandle(statement);
}

} // namespace corvane::embedded

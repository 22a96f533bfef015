#pragma once

#include "platform/database/embedded/dialect.h"
#include "platform/database/rowset.h"

struct sqlite3_stmt;

namespace corvane::embedded {

/// Runs a statement to its end. A column's kind is that of its declaration, else what the
/// translation knows, else the storage class of each cell; a cell that does not suit the kind keeps
/// its storage class. DatabaseError when a row fails; no rows come of that.
RowsetPtr fetchAll(sqlite3_stmt *statement, const std::vector<ResultType> &results);

} // namespace corvane::embedded

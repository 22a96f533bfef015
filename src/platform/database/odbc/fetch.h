#pragma once

#include "platform/database/odbc/handles.h"
#include "platform/database/rowset.h"

namespace corvane::odbc {

/// Reads the first result that has columns to its end: row counts and messages before it are passed
/// over. No columns at all: an empty rowset. A failure behind the rows is a failure, too, because
/// some drivers tell of one among the rows only there.
/// @throws DatabaseError; the password is kept out of its words.
RowsetPtr fetchResult(const Session &session, const Statement &statement, const QString &password);

} // namespace corvane::odbc

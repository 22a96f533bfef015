#pragma once

#include "platform/database/embedded/moment.h"

struct sqlite3;

namespace corvane::embedded {

/// What the functions of a connection share.
struct FunctionState
{
    DateOrder dateOrder = DateOrder::MonthDayYear; ///< how they read a date in a text column
    int failure = 0; ///< the server's number of the failure that ended the statement; 0: none
    int recursions = 0; ///< rows that common tables of the statement made from themselves
};

/// Gives the connection the functions that translated statements call, all named "corvane_...".
/// `state` must outlive the connection. DatabaseError when SQLite takes them not.
void registerFunctions(sqlite3 *database, FunctionState &state);

} // namespace corvane::embedded

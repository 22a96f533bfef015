#pragma once

#include "platform/database/embedded/moment.h"

struct sqlite3;

namespace corvane::embedded {

/// Gives the connection the functions that translated statements call, all named "corvane_...".
/// `order` is how they read a date in a text column. DatabaseError when SQLite takes them not.
void registerFunctions(sqlite3 *database, DateOrder order);

} // namespace corvane::embedded

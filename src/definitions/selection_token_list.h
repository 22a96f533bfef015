#pragma once

#include "definitions/selection_token.h"
#include "platform/database/connection.h"

#include <functional>

namespace corvane {

/// The query of a token's list: display column first, value column second. The names in it are the
/// request's: placeholder databases are replaced (fixDBNames) before a request is parsed.
QString selectionListQuery(const SelectionToken &token);

/// Runs the list's query. @throws DatabaseError, its words naming the token and its place.
RowsetPtr openSelectionList(Connection &connection, const SelectionToken &token);

/// Takes the text that a row shows and the value that it stands for; both are valid for the call only.
using SelectionSink = std::function<void(QStringView display, QStringView value)>;

/// Hands over every row in its order and tells the percentage done whenever it changes.
/// Returns why rows are missing; empty when all are there.
QString fillSelection(const Rowset &rows, const ValueTextStyle &style, const SelectionSink &add,
    const std::function<void(int)> &progress);

} // namespace corvane

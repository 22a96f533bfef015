#pragma once

#include "batch/batch_options.h"
#include "definitions/date_token.h"
#include "definitions/selection_token.h"
#include "platform/database/connection.h"

#include <variant>

namespace corvane {

/// Why the command line cannot answer what a report asks; `status` is the one to end with.
struct AnswerFault {
    int status = 0;
    QString words;
};

struct DateReply {
    QString sql;
    DateParamTable table;
};

/// What the date parameter dialog would hand back: --date1 and --date2, else the token's defaults.
/// @throws RunTimeFault for a token that is none
std::variant<DateReply, AnswerFault> answerDates(const QString &request, const BatchOptions &options, DateOrder order, QDate today);

/// What the selection dialog would hand back for --select and --select-all; values are the list's hidden
/// ones. @throws RunTimeFault for a token that is none, DatabaseError when its list cannot be read
std::variant<SelectionResult, AnswerFault> answerSelection(
    const QString &request, const BatchOptions &options, Connection &connection, const ValueTextStyle &style);

} // namespace corvane

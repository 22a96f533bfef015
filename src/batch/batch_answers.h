#pragma once

#include "batch/batch_options.h"
#include "definitions/date_token.h"
#include "definitions/parameters_clause.h"
#include "definitions/selection_token.h"
#include "platform/database/connection.h"

#include <variant>

namespace corvane {

/// Why the command line cannot answer what a report asks; `status` is the one to end with.
struct AnswerFault {
    int status = 0;
    QString words;
};

/// Of a report for one patient that no --patient names.
inline const QString kPatientMissing = QStringLiteral("The report is for one patient: add --patient ID.");

/// What the date parameter dialog would hand back: --date1 and --date2, else the token's defaults.
/// @throws RunTimeFault for a token that is none
std::variant<DateAnswers, AnswerFault> answerDates(const QString &request, const BatchOptions &options, DateOrder order, QDate today);

/// What the selection dialog would hand back for --select and --select-all; values are the list's hidden
/// ones. @throws RunTimeFault for a token that is none, DatabaseError when its list cannot be read
std::variant<SelectionAnswers, AnswerFault> answerSelection(
    const QString &request, const BatchOptions &options, Connection &connection, const ValueTextStyle &style);

/// The --param values as the clause's types, else its defaults.
std::variant<ParameterAnswers, AnswerFault> answerParameters(const ParametersClause &clause, const BatchOptions &options, DateOrder order);

} // namespace corvane

#pragma once

#include "definitions/date_token.h"
#include "definitions/parameters_clause.h"
#include "definitions/selection_token.h"

namespace corvane {

class ReportHost;

/// The dialogs that a report asks its parameters with. Each returns when it is closed; the later ones
/// return nothing when they were cancelled.
class ParameterDialogs
{
public:
    virtual ~ParameterDialogs() = default;

    /// The fixed date range: starts from the host's dates and writes confirmed ones back.
    virtual void askDateRange(ReportHost &host) = 0;

    /// The patient search: leaves the chosen patient in gPatientID and gPatientText, empty when cancelled.
    virtual void askPatient() = 0;

    /// The dates of a query text's date token. @throws RunTimeFault as DateToken::parseRequest()
    virtual std::optional<DateAnswers> askDates(const QString &request) = 0;

    /// The rows of a query text's selection token, whose list is read from the main database.
    /// @throws RunTimeFault as SelectionToken::parseRequest(), DatabaseError when the list cannot be read
    virtual std::optional<SelectionAnswers> askSelection(const QString &request) = 0;

    /// The values of a query text's PARAMETERS clause.
    virtual std::optional<ParameterAnswers> askParameters(const ParametersClause &clause) = 0;
};

} // namespace corvane

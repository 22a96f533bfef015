#pragma once

#include "batch/batch_answers.h"
#include "definitions/parameter_dialogs.h"
#include "shared/reportr.h"

namespace corvane {

/// Answers what a report asks from the command line. What it cannot answer counts as cancelled; fault()
/// says why.
class BatchDialogs : public ParameterDialogs
{
public:
    BatchDialogs(Reportr &state, const BatchOptions &options, QDate today, ValueTextStyle style);

    const std::optional<AnswerFault> &fault() const { return m_fault; }

    /// The range was set when the report was opened, so the dialog's answer stands already.
    void askDateRange(ReportHost &) override { }
    /// The patient was chosen before the report was opened, if one was named.
    void askPatient() override;
    std::optional<DateAnswers> askDates(const QString &request) override;
    std::optional<SelectionAnswers> askSelection(const QString &request) override;
    std::optional<ParameterAnswers> askParameters(const ParametersClause &clause) override;

private:
    template <typename Answers>
    std::optional<Answers> taken(std::variant<Answers, AnswerFault> reply);
    DateOrder order() const { return dateOrderOf(m_state.gDateOrder); }

    Reportr &m_state;
    const BatchOptions &m_options;
    QDate m_today;
    ValueTextStyle m_style;
    std::optional<AnswerFault> m_fault;
};

} // namespace corvane

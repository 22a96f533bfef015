#include "batch/batch_dialogs.h"

#include "batch/batch_run.h"

namespace corvane {

BatchDialogs::BatchDialogs(Reportr &state, const BatchOptions &options, QDate today, ValueTextStyle style)
    : m_state(state)
    , m_options(options)
    , m_today(today)
    , m_style(std::move(style))
{
}

template <typename Answers>
std::optional<Answers> BatchDialogs::taken(std::variant<Answers, AnswerFault> reply)
{
    if (auto *answers = std::get_if<Answers>(&reply))
        return std::move(*answers);
    m_fault = std::get<AnswerFault>(std::move(reply));
    return std::nullopt;
}

void BatchDialogs::askPatient()
{
    if (m_state.gPatientID.isEmpty())
        m_fault = AnswerFault {ExitStatus::Usage, kPatientMissing};
}

std::optional<DateAnswers> BatchDialogs::askDates(const QString &request)
{
    return taken(answerDates(request, m_options, order(), m_today));
}

std::optional<SelectionAnswers> BatchDialogs::askSelection(const QString &request)
{
    return taken(answerSelection(request, m_options, *m_state.gConn, m_style));
}

std::optional<ParameterAnswers> BatchDialogs::askParameters(const ParametersClause &clause)
{
    return taken(answerParameters(clause, m_options, order()));
}

} // namespace corvane

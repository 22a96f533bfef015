#include "batch/batch_answers.h"

#include "batch/batch_run.h"
#include "definitions/selection_token_list.h"

namespace corvane {

namespace {

/// The hidden values of a list in its order, and why some are missing.
struct ListedValues {
    QStringList values;
    QString incomplete;
};

ListedValues readList(const SelectionToken &token, Connection &connection, const ValueTextStyle &style)
{
    ListedValues list;
    const RowsetPtr rows = openSelectionList(connection, token);
    connection.forgetResult();
    list.incomplete = fillSelection(
        *rows, style, [&](QStringView, QStringView value) { list.values += value.toString(); }, [](int) { });
    return list;
}

QString missingSelection(const SelectionToken &token)
{
    return QStringLiteral("The report asks for a selection (\"%1\"): add --select VALUE or --select-all.").arg(token.instruction());
}

} // namespace

std::variant<DateAnswers, AnswerFault> answerDates(const QString &request, const BatchOptions &options, DateOrder order, QDate today)
{
    const DateToken token = DateToken::parseRequest(request);
    DateAnswers answers = defaultAnswers(token, order, today);
    if (options.date1)
        answers.first = options.date1;
    if (options.date2)
        answers.second = options.date2;
    if (!isAnswered(token, answers)) {
        const bool first = !answers.first;
        return AnswerFault {ExitStatus::Usage,
            QStringLiteral("The report asks for a date (\"%1\"): add --date%2 DATE.").arg(token.captions[first ? 0 : 1]).arg(first ? 1 : 2)};
    }
    if (const auto fault = orderFault(token, answers))
        return AnswerFault {ExitStatus::ReportFailed, *fault};
    return answers;
}

std::variant<SelectionAnswers, AnswerFault> answerSelection(
    const QString &request, const BatchOptions &options, Connection &connection, const ValueTextStyle &style)
{
    const SelectionToken token = SelectionToken::parseRequest(request);
    if (!options.selectAll && options.select.isEmpty())
        return AnswerFault {ExitStatus::Usage, missingSelection(token)};
    if (!token.takesSeveral() && (options.selectAll || options.select.size() > 1))
        return AnswerFault {ExitStatus::Usage,
            QStringLiteral("The report takes one value (\"%1\"): give one --select VALUE.").arg(token.instruction())};
    const ListedValues list = readList(token, connection, style);
    for (const QString &value : options.select) {
        if (!list.values.contains(value))
            return AnswerFault {ExitStatus::ReportFailed, QStringLiteral("The value \"%1\" is not in the report's list. --select takes the value behind an entry, not the entry's text.").arg(value)};
    }
    SelectionAnswers answers {token.marker(), {}};
    for (const QString &value : list.values) {
        if (options.selectAll || options.select.contains(value))
            answers.values += value;
    }
    answers.all = !list.values.isEmpty() && answers.values.size() == list.values.size();
    // Nobody sees the form's line about an incomplete list here, so "all" of it is never taken for all.
    if (options.selectAll && !list.incomplete.isEmpty())
        return AnswerFault {ExitStatus::ReportFailed, QStringLiteral("Not all of the report's list can be selected, because it is incomplete. Run the report again, or name values with --select. Cause: %1").arg(list.incomplete)};
    if (const QString refusal = selectionRefusal(token, answers, list.incomplete); !refusal.isEmpty())
        return AnswerFault {ExitStatus::ReportFailed, refusal};
    return answers;
}

std::variant<ParameterAnswers, AnswerFault> answerParameters(const ParametersClause &clause, const BatchOptions &options, DateOrder order)
{
    std::map<QString, QString> given;
    for (const auto &[name, text] : options.params)
        given[name.toLower()] = text;
    ParameterAnswers answers;
    for (const QueryParameter &parameter : clause.parameters) {
        const QString name = parameter.name.toLower();
        const bool isGiven = given.contains(name);
        if (!isGiven && parameter.defaultText.isEmpty())
            return AnswerFault {ExitStatus::Usage, QStringLiteral("The report asks for \"%1\": add --param \"%1=VALUE\".").arg(parameter.name)};
        const QString text = isGiven ? given[name] : parameter.defaultText;
        const auto value = readParameter(parameter.type, text, order);
        if (!value)
            return AnswerFault {ExitStatus::Usage, QStringLiteral("--param \"%1=%2\": the value does not fit the parameter's type.").arg(parameter.name, text)};
        answers[name] = *value;
        given.erase(name);
    }
    if (!given.empty())
        return AnswerFault {ExitStatus::Usage, QStringLiteral("The report has no parameter \"%1\".").arg(given.begin()->first)};
    return answers;
}

} // namespace corvane

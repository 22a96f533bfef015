#include "definitions/parameters_clause.h"
#include "fuzz/promise.h"
#include "platform/database/embedded/tokens.h"
#include "shared/run_time_fault.h"

using namespace corvane;
using test::promise;

namespace {

ParameterValue answerTo(const QueryParameter &parameter, DateOrder order)
{
    for (const QString &text :
        {parameter.defaultText, QStringLiteral("1"), QStringLiteral("2026-01-01")}) {
        if (const auto value = readParameter(parameter.type, text, order))
            return *value;
        promise(text != parameter.defaultText || text.isEmpty(), "a default fits its type");
    }
    promise(false, "there is an answer to every parameter");
    return {};
}

void resolves(const QString &sql, DateOrder order)
{
    const auto clause = ParametersClause::parse(sql, order);
    ParameterAnswers answers;
    if (clause) {
        promise(clause->end > 0 && clause->end <= sql.size() && sql[clause->end - 1] == u';',
            "a clause ends with its semicolon");
        for (const QueryParameter &parameter : clause->parameters) {
            promise(!parameter.name.isEmpty(), "a parameter has a name");
            const ParameterValue value = answerTo(parameter, order);
            promise(readParameter(parameter.type, parameterText(value, order), order) == value,
                "a value is read as it is written");
            promise(answers.emplace(parameter.name.toLower(), value).second,
                "no two parameters have one name");
        }
    }
    resolvedQuery(sql, answers, order);
}

/// An answer stands in the query as a quoted text and nothing else, whatever it holds.
void staysQuoted(const QString &answer)
{
    const QString sql = QStringLiteral("PARAMETERS [a b] Text; SELECT [a b] FROM p");
    const QString resolved
        = resolvedQuery(sql, {{QStringLiteral("a b"), answer}}, DateOrder::MonthDayYear);
    const auto tokens = embedded::tokenize(resolved);
    promise(tokens.size() == 5 && tokens[1].kind == embedded::Token::Kind::Text,
        "an answer stays within its quotes");
    promise(embedded::unquoted(tokens[1]) == answer, "an answer is there as it is");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString input = test::inputText(QByteArrayView(data, qsizetype(size)));
    staysQuoted(QString(input).remove(u'\0'));
    for (const DateOrder order : {DateOrder::MonthDayYear, DateOrder::YearMonthDay}) {
        try {
            resolves(input, order);
        } catch (const RunTimeFault &fault) {
            promise(fault.description().contains(u"PARAMETERS"), "a refusal names the clause");
        }
    }
    return 0;
}

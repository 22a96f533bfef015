#pragma once

#include "platform/dates/date_text.h"

#include <QtCore/QString>

#include <map>
#include <optional>
#include <variant>
#include <vector>

namespace corvane {

enum class ParameterType { Text, Number, Date, Boolean };

/// One parameter of the clause; names are compared without regard to case.
struct QueryParameter {
    QString name; ///< without its brackets
    ParameterType type = ParameterType::Text;
    QString defaultText; ///< as a user would type it; empty: none

    bool operator==(const QueryParameter &) const = default;
};

/// A value that fits its parameter's type: text, a number's digits, a date, a truth value.
using ParameterValue = std::variant<QString, double, QDate, bool>;
/// What was answered, by lower-case name.
using ParameterAnswers = std::map<QString, ParameterValue>;

/// "PARAMETERS name type [default], …;" before a query. Names with blanks stand in brackets, defaults of
/// dates between "#" or quotes, of texts between quotes.
struct ParametersClause {
    std::vector<QueryParameter> parameters;
    qsizetype end = 0; ///< where the query starts behind the clause's semicolon, from 0

    /// Whether the text's first word is PARAMETERS, in any case: what the program has always looked at.
    static bool startsIn(QStringView sql) { return sql.first(std::min<qsizetype>(sql.size(), 10)).compare(u"parameters", Qt::CaseInsensitive) == 0; }

    /// Nothing for a text without a clause. @throws RunTimeFault InvalidArgument for one that cannot be
    /// read; the words name the place, in characters from 1.
    static std::optional<ParametersClause> parse(QStringView sql, DateOrder order);
};

/// A typed text as the parameter's type; nothing when it does not fit. An empty text fits texts only.
std::optional<ParameterValue> readParameter(ParameterType type, const QString &text, DateOrder order);
/// The reverse, as a user would type it.
QString parameterText(const ParameterValue &value, DateOrder order);

/// The query behind the clause with each parameter's name replaced by its value as an SQL literal, and
/// "#…#" dates by quoted ones. Quoted texts and comments stay as they are. Without a clause only the dates change.
/// @throws RunTimeFault InvalidArgument for a parameter without an answer
QString resolvedQuery(const QString &sql, const ParameterAnswers &answers, DateOrder order);

} // namespace corvane

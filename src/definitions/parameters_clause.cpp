#include "definitions/parameters_clause.h"

#include "shared/run_time_fault.h"

#include <algorithm>
#include <array>
#include <QtCore/QLocale>

namespace corvane {

namespace {

struct TypeWord {
    QLatin1StringView word;
    ParameterType type;
};

constexpr std::array<TypeWord, 18> kTypes {{
    {QLatin1StringView("text"), ParameterType::Text}, {QLatin1StringView("char"), ParameterType::Text},
    {QLatin1StringView("varchar"), ParameterType::Text}, {QLatin1StringView("string"), ParameterType::Text},
    {QLatin1StringView("number"), ParameterType::Number}, {QLatin1StringView("integer"), ParameterType::Number},
    {QLatin1StringView("int"), ParameterType::Number}, {QLatin1StringView("long"), ParameterType::Number},
    {QLatin1StringView("short"), ParameterType::Number}, {QLatin1StringView("single"), ParameterType::Number},
    {QLatin1StringView("double"), ParameterType::Number}, {QLatin1StringView("currency"), ParameterType::Number},
    {QLatin1StringView("decimal"), ParameterType::Number}, {QLatin1StringView("date"), ParameterType::Date},
    {QLatin1StringView("datetime"), ParameterType::Date}, {QLatin1StringView("boolean"), ParameterType::Boolean},
    {QLatin1StringView("bit"), ParameterType::Boolean}, {QLatin1StringView("yesno"), ParameterType::Boolean},
}};

bool isWordLetter(QChar c)
{
    return c.isLetterOrNumber() || c == u'_' || c == u'@';
}

/// Where the stretch that starts at `at` ends: a quoted text, a bracketed name, a date between "#", a comment, a
/// word, or a single character.
qsizetype stretchEnd(QStringView sql, qsizetype at)
{
    const auto behind = [&](QStringView closing, qsizetype from) {
        const qsizetype found = sql.indexOf(closing, from);
        return found < 0 ? sql.size() : found + closing.size();
    };
    const QStringView rest = sql.sliced(at);
    if (rest.startsWith(u"--"))
        return behind(u"\n", at);
    if (rest.startsWith(u"/*"))
        return behind(u"*/", at + 2);
    switch (rest.front().unicode()) {
    case u'\'':
    case u'"':
    case u'#':
        return behind(rest.first(1), at + 1);
    case u'[':
        return behind(u"]", at + 1);
    default:
        break;
    }
    qsizetype end = at;
    while (end < sql.size() && isWordLetter(sql[end]))
        ++end;
    return std::max(end, at + 1);
}

bool isBlankOrComment(QStringView stretch)
{
    return stretch.trimmed().isEmpty() || stretch.startsWith(u"--") || stretch.startsWith(u"/*");
}

/// The name behind brackets; a plain word is its own name, anything else none.
QStringView nameOf(QStringView stretch)
{
    if (stretch.size() > 2 && stretch.startsWith(u'[') && stretch.endsWith(u']'))
        return stretch.sliced(1, stretch.size() - 2).trimmed();
    return isWordLetter(stretch.front()) ? stretch : QStringView();
}

/// The words of the clause one after the other.
class ClauseReader
{
public:
    ClauseReader(QStringView sql, DateOrder order)
        : m_sql(sql)
        , m_order(order)
    {
        advance();
    }

    ParametersClause read()
    {
        advance();
        ParametersClause clause;
        do {
            clause.parameters.push_back(readParameter(clause));
        } while (takeIf(u","));
        if (m_word != u";")
            fail(m_word.isEmpty() ? QStringLiteral("the clause must end with \";\"") : unexpected());
        clause.end = m_end;
        return clause;
    }

private:
    QueryParameter readParameter(const ParametersClause &clause)
    {
        QueryParameter parameter;
        const QStringView name = m_word.isEmpty() ? QStringView() : nameOf(m_word);
        if (name.isEmpty())
            fail(QStringLiteral("a parameter's name is expected"));
        parameter.name = name.toString();
        for (const QueryParameter &other : clause.parameters) {
            if (other.name.compare(parameter.name, Qt::CaseInsensitive) == 0)
                fail(QStringLiteral("the parameter \"%1\" is named twice").arg(parameter.name));
        }
        advance();
        parameter.type = readType(parameter.name);
        if (m_word != u"," && m_word != u";" && !m_word.isEmpty())
            parameter.defaultText = readDefault(parameter);
        return parameter;
    }

    ParameterType readType(const QString &name)
    {
        const auto found = std::ranges::find_if(kTypes, [&](const TypeWord &type) {
            return m_word.compare(type.word, Qt::CaseInsensitive) == 0;
        });
        if (found == kTypes.end())
            fail(QStringLiteral("the type of \"%1\" must be Text, Number, DateTime or Boolean").arg(name));
        advance();
        if (takeIf(u"("))
            while (!m_word.isEmpty() && !takeIf(u")"))
                advance();
        return found->type;
    }

    QString readDefault(const QueryParameter &parameter)
    {
        QString text;
        if (m_word.size() > 1 && QStringView(u"'\"#").contains(m_word.front())) {
            const QChar quote = m_word.front();
            text = m_word.sliced(1, m_word.size() - 2).toString();
            advance();
            // A quote within a text is doubled, which reads as two texts side by side.
            while (quote != u'#' && m_word.size() > 1 && m_word.front() == quote && m_isGlued) {
                text += quote + m_word.sliced(1, m_word.size() - 2);
                advance();
            }
        } else {
            do {
                text += m_word;
                advance();
            } while (!m_word.isEmpty() && m_isGlued && m_word != u"," && m_word != u";");
        }
        if (!corvane::readParameter(parameter.type, text, m_order))
            fail(QStringLiteral("the default \"%1\" of \"%2\" does not fit its type").arg(text, parameter.name));
        return text;
    }

    bool takeIf(QStringView word)
    {
        if (m_word != word)
            return false;
        advance();
        return true;
    }

    void advance()
    {
        m_isGlued = true;
        for (qsizetype at = m_end; at < m_sql.size();) {
            const qsizetype end = stretchEnd(m_sql, at);
            const QStringView stretch = m_sql.sliced(at, end - at);
            if (!isBlankOrComment(stretch)) {
                m_begin = at;
                m_end = end;
                m_word = stretch;
                return;
            }
            m_isGlued = false;
            at = end;
        }
        m_begin = m_end = m_sql.size();
        m_word = {};
    }

    QString unexpected() const { return QStringLiteral("\"%1\" is not expected there").arg(m_word); }

    [[noreturn]] void fail(const QString &words) const
    {
        throw RunTimeFault(RunTimeFault::InvalidArgument,
            QStringLiteral("the PARAMETERS clause at character %1: %2").arg(m_begin + 1).arg(words));
    }

    QStringView m_sql;
    DateOrder m_order;
    QStringView m_word;
    qsizetype m_begin = 0;
    qsizetype m_end = 0;
    bool m_isGlued = true; ///< nothing stood between this word and the one before
};

QString quoted(QString text)
{
    return u'\'' + text.replace(u'\'', QStringLiteral("''")) + u'\'';
}

QString literalOf(const ParameterValue &value, DateOrder order)
{
    if (std::holds_alternative<double>(value))
        return parameterText(value, order);
    if (const auto *truth = std::get_if<bool>(&value))
        return *truth ? QStringLiteral("1") : QStringLiteral("0");
    return quoted(parameterText(value, order));
}

std::optional<bool> readTruth(const QString &text)
{
    for (const auto &[yes, no] : {std::pair(u"true", u"false"), {u"yes", u"no"}, {u"1", u"0"}}) {
        if (text.compare(QStringView(yes), Qt::CaseInsensitive) == 0)
            return true;
        if (text.compare(QStringView(no), Qt::CaseInsensitive) == 0)
            return false;
    }
    return std::nullopt;
}

/// What stands in the query in place of the stretch.
QString resolvedStretch(QStringView stretch, const std::vector<QueryParameter> &parameters, const ParameterAnswers &answers, DateOrder order)
{
    if (stretch.size() > 2 && stretch.startsWith(u'#') && readDate(stretch.sliced(1, stretch.size() - 2), order))
        return quoted(stretch.sliced(1, stretch.size() - 2).toString());
    const QStringView name = nameOf(stretch);
    for (const QueryParameter &parameter : parameters) {
        if (name.compare(parameter.name, Qt::CaseInsensitive) != 0)
            continue;
        const auto answer = answers.find(parameter.name.toLower());
        if (answer == answers.end())
            throw RunTimeFault(RunTimeFault::InvalidArgument, QStringLiteral("the parameter \"%1\" has no value").arg(parameter.name));
        return literalOf(answer->second, order);
    }
    return stretch.toString();
}

} // namespace

std::optional<ParametersClause> ParametersClause::parse(QStringView sql, DateOrder order)
{
    // A column such as "parameters_id" begins with the word but is none.
    if (!startsIn(sql) || (sql.size() > 10 && isWordLetter(sql[10])))
        return std::nullopt;
    return ClauseReader(sql, order).read();
}

std::optional<ParameterValue> readParameter(ParameterType type, const QString &text, DateOrder order)
{
    switch (type) {
    case ParameterType::Text:
        return text;
    case ParameterType::Number: {
        bool isNumber = false;
        const double number = text.trimmed().toDouble(&isNumber);
        return isNumber && qIsFinite(number) ? std::optional<ParameterValue>(number) : std::nullopt;
    }
    case ParameterType::Date:
        if (const auto date = readDate(text, order))
            return *date;
        return std::nullopt;
    case ParameterType::Boolean:
        if (const auto truth = readTruth(text.trimmed()))
            return *truth;
        return std::nullopt;
    }
    Q_UNREACHABLE();
}

QString parameterText(const ParameterValue &value, DateOrder order)
{
    if (const auto *text = std::get_if<QString>(&value))
        return *text;
    if (const auto *number = std::get_if<double>(&value))
        return QString::number(*number, 'g', QLocale::FloatingPointShortest);
    if (const auto *date = std::get_if<QDate>(&value))
        return dateText(*date, order);
    return std::get<bool>(value) ? QStringLiteral("Yes") : QStringLiteral("No");
}

QString resolvedQuery(const QString &sql, const ParameterAnswers &answers, DateOrder order)
{
    const auto clause = ParametersClause::parse(sql, order);
    const std::vector<QueryParameter> parameters = clause ? clause->parameters : std::vector<QueryParameter>();
    const QStringView text(sql);
    QString resolved;
    for (qsizetype at = clause ? clause->end : 0; at < sql.size();) {
        const qsizetype end = stretchEnd(sql, at);
        resolved += resolvedStretch(text.sliced(at, end - at), parameters, answers, order);
        at = end;
    }
    return clause ? resolved.trimmed() : resolved;
}

} // namespace corvane

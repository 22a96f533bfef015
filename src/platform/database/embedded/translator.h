#pragma once

#include "platform/database/embedded/dialect.h"
#include "platform/database/embedded/expression.h"
#include "platform/database/embedded/moment.h"
#include "platform/database/embedded/tokens.h"

#include <optional>
#include <span>

namespace corvane::embedded {

/// A result column of a query; with a table it stands for all columns of that table.
struct QueryColumn
{
    QString name;
    SqlType type;
    QString catalogue;
    QString table;
};

/// What FROM names: a stored table, or a query or common table by its columns.
struct Source
{
    QString name; ///< the alias, or the table's name without one
    QString catalogue;
    QString table;
    std::vector<QueryColumn> columns;
    bool reading = false; ///< a common table whose own query is being read
};

struct Query
{
    QString sql;
    std::vector<QueryColumn> columns;
};

/// Reads one statement of the server's language by recursive descent and writes SQLite's.
/// The sources of a SELECT are read before its list, so that the list knows its columns' types.
class Translator
{
public:
    Translator(QStringView sql, const DialectSettings &settings);

    Translation run();

private:
    class Nesting;
    enum class Level { Outermost, Inner };

    struct Core
    {
        QString sql;
        QString top;
        std::vector<QueryColumn> columns;
    };

    // Statements: translator_query.cpp
    void refuseOtherStatements();
    Query query(Level level, const QStringList *ownNames = nullptr);
    QString commonTables();
    QString commonTable();
    QString columnNames(QStringList &names);
    Core core(Level level);
    Core queryPart(Level level);
    QString top();
    qsizetype fromOfThisCore() const;
    QString selectList(Level level, std::vector<QueryColumn> &columns);
    QString selectItem(Level level, std::vector<QueryColumn> &columns);
    QString star(const QString &qualifier, std::vector<QueryColumn> &columns);
    QString clauses(bool readsItself);
    QString orderBy();
    QString expressionList();
    QString optionalAlias();

    // FROM: translator_sources.cpp
    QString sources();
    QString joined();
    QString join(const QString &left);
    QString joinWord();
    QString source();
    QString storedTable();
    QString derivedTable();
    void dropHints();
    void refuseSourceEnd();
    QString name();
    QStringList nameParts();
    void checkSchema(const QString &schema, qsizetype at);
    SqlType columnType(const QString &qualifier, const QString &column) const;
    SqlType sourceColumnType(const Source &source, const QString &column, bool &found) const;

    // Expressions: translator_expression.cpp
    Expression condition();
    Expression conjunction();
    Expression negation();
    Expression predicate();
    Expression comparison(Expression left);
    Expression between(Expression left, bool negated);
    Expression inList(Expression left, bool negated);
    Expression like(const Expression &subject, bool negated);
    Expression primary();
    Expression parenthesised();
    Expression columnReference();
    Expression caseExpression();
    Expression scalarQuery();

    // Sums and products: translator_arithmetic.cpp
    Expression additive();
    Expression multiplicative();
    Expression unary();
    static Expression joinedBits(const Expression &left, QStringView sign, const Expression &right);

    // Dates in quotes: translator_dates.cpp
    enum class Doubt { KeepText, ReadDate };
    SqlType align(std::span<Expression *const> operands, Doubt doubt) const;
    SqlType align(std::vector<Expression> &operands, Doubt doubt) const;
    void alignLiteral(Expression &operand, const SqlType &common) const;
    static void alignExpression(Expression &operand, const SqlType &common);
    QString dateLiteral(const QString &content, ValueKind kind) const;
    QString dateLiteral(const QString &content, ValueKind kind, DateOrder order) const;
    Expression dateArgument();

    // Calls: translator_calls.cpp
    bool atCall() const;
    Expression call();
    Expression specialCall(const Token &name, bool &found);
    Expression plainCall(const Token &name);
    std::vector<Expression> arguments(const Token &name, int least, int most);
    QString window();
    int datePart();
    Expression dateAdd();
    Expression dateDifference();
    Expression datePartOf(const char *function, ValueKind kind);
    Expression fixedPartOf(int part);
    Expression conditional();
    Expression firstKnown(const Token &name, const char *function, int most);
    Expression knownOrElse(const Token &name);
    Expression total(const Token &name);
    Expression average(const Token &name);
    Expression currentMoment() const;

    // Conversions: translator_conversions.cpp
    Expression cast();
    Expression convert();
    SqlType typeName();
    Expression converted(Expression value, const SqlType &target, const Expression *style);
    Expression asText(const Expression &value);

    TokenReader m_in;
    const DialectSettings &m_settings;
    std::vector<std::vector<Source>> m_scopes;
    std::vector<Source> m_commonTables;
    QStringList m_catalogues;
    bool m_readsItself = false; ///< a source of this SELECT is the common table around it
    int m_depth = 0;
};

/// Words that end an expression or a source and so are no alias.
bool isReserved(const Token &token);

/// Counts levels of nesting, so that no statement can exhaust the stack.
class Translator::Nesting
{
public:
    explicit Nesting(Translator &translator);
    ~Nesting() { --m_translator.m_depth; }
    Q_DISABLE_COPY_MOVE(Nesting)

private:
    Translator &m_translator;
};

} // namespace corvane::embedded

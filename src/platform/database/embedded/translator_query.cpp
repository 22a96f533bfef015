#include "platform/database/embedded/translator.h"

#include "platform/database/error.h"

#include <algorithm>
#include <array>
#include <utility>

namespace corvane::embedded {

namespace {

/// SQLite's own parser gives up near a hundred open parentheses.
constexpr int kMostNesting = 80;

constexpr std::array kReserved{"all", "and", "as", "asc", "begin", "between", "by", "case",
    "collate", "create", "cross", "declare", "delete", "desc", "distinct", "drop", "else", "end",
    "escape", "except", "exec", "execute", "exists", "for", "from", "full", "go", "group", "having",
    "if", "in", "inner", "insert", "intersect", "into", "is", "join", "left", "like", "not", "null",
    "on", "option", "or", "order", "outer", "over", "pivot", "return", "right", "select", "set",
    "tablesample", "then", "top", "truncate", "union", "unpivot", "update", "use", "values", "when",
    "where", "while", "with"};

constexpr std::array kOtherStatements{"alter", "begin", "create", "dbcc", "declare", "delete",
    "drop", "exec", "execute", "go", "grant", "if", "insert", "kill", "merge", "print", "revoke",
    "set", "truncate", "update", "use", "waitfor", "while"};

bool isOneOf(const Token &token, auto &words)
{
    return token.kind == Token::Kind::Word && std::ranges::any_of(words, [&](const char *word) {
        return token.isWord(QLatin1StringView(word));
    });
}

std::vector<QueryColumn> renamed(std::vector<QueryColumn> columns, const QStringList &names)
{
    for (size_t i = 0; i < std::min(columns.size(), size_t(names.size())); ++i)
        columns[i].name = names[qsizetype(i)];
    return columns;
}

} // namespace

bool isReserved(const Token &token)
{
    return isOneOf(token, kReserved);
}

Translator::Nesting::Nesting(Translator &translator)
    : m_translator(translator)
{
    if (++translator.m_depth > kMostNesting) {
        --translator.m_depth;
        translator.m_in.refuse(QStringLiteral("more than %1 levels of nesting").arg(kMostNesting));
    }
}

Translator::Translator(QStringView sql, const DialectSettings &settings)
    : m_in(sql)
    , m_settings(settings)
{
}

Translation Translator::run()
{
    m_in.takeSymbol(";"); // people put one before WITH
    if (m_in.peek().kind == Token::Kind::End)
        throw DatabaseError(kStatementError, QStringLiteral("The query holds no statement."));
    refuseOtherStatements();
    const Query whole = query(Level::Outermost);
    m_in.takeSymbol(";");
    if (m_in.peek().kind != Token::Kind::End) {
        refuseOtherStatements();
        if (m_in.atWord("select") || m_in.atWord("with"))
            m_in.refuse(QStringLiteral("several statements in one query"));
        m_in.refuseToken();
    }
    Translation result;
    result.sql = whole.sql.toUtf8();
    for (const QueryColumn &column : whole.columns)
        result.results.push_back({column.type, !column.table.isEmpty()});
    result.catalogues = m_catalogues;
    return result;
}

void Translator::refuseOtherStatements()
{
    const Token &token = m_in.peek();
    if (isOneOf(token, kOtherStatements))
        m_in.refuse(token.text.toString().toUpper());
}

/// `ownNames` are the columns of the common table that this query is, which it may read itself from
/// its second part on.
Query Translator::query(Level level, const QStringList *ownNames)
{
    const Nesting nesting(*this);
    const size_t commonTablesBefore = m_commonTables.size();
    const QString with = commonTables();
    m_scopes.emplace_back();
    Core first = queryPart(level);
    if (ownNames)
        m_commonTables[commonTablesBefore - 1].columns = renamed(first.columns, *ownNames);
    QString sql = first.sql;
    QString limit = first.top;
    while (m_in.atWord("union") || m_in.atWord("except") || m_in.atWord("intersect")) {
        if (!limit.isEmpty())
            sql = u"SELECT * FROM (" % sql % limit % u')';
        const QString word = m_in.take().text.toString().toUpper();
        sql += u' ' % word % (m_in.takeWord("all") ? u" ALL " : u" ");
        m_scopes.back().clear();
        const Core next = queryPart(Level::Inner);
        sql += next.top.isEmpty() ? next.sql : u"SELECT * FROM (" % next.sql % next.top % u')';
        limit.clear();
        for (size_t i = 0; i < std::min(first.columns.size(), next.columns.size()); ++i)
            if (!first.columns[i].type.known() && first.columns[i].table.isEmpty())
                first.columns[i].type = next.columns[i].type;
    }
    sql += orderBy() + limit;
    m_scopes.pop_back();
    m_commonTables.resize(commonTablesBefore);
    if (m_in.atWord("for") || m_in.atWord("option"))
        m_in.refuse((m_in.peek().text % u' ' % m_in.peek(1).text).toUpper().trimmed());
    return {with + sql, std::move(first.columns)};
}

QString Translator::commonTables()
{
    if (!m_in.takeWord("with"))
        return {};
    QStringList parts;
    do
        parts += commonTable();
    while (m_in.takeSymbol(","));
    return u"WITH " % parts.join(u", ") % u' ';
}

QString Translator::commonTable()
{
    Source table;
    table.name = name();
    table.reading = true;
    m_commonTables.push_back(table);
    QStringList names;
    const QString head = quotedName(table.name) % columnNames(names);
    m_in.expectWord("as");
    m_in.expectSymbol("(");
    Query body = query(Level::Inner, &names);
    m_in.expectSymbol(")");
    m_commonTables.back().columns = renamed(std::move(body.columns), names);
    m_commonTables.back().reading = false;
    return head % u" AS (" % body.sql % u')';
}

/// "(a, b)", or nothing.
QString Translator::columnNames(QStringList &names)
{
    if (!m_in.takeSymbol("("))
        return {};
    QStringList quoted;
    do {
        names += name();
        quoted += quotedName(names.last());
    } while (m_in.takeSymbol(","));
    m_in.expectSymbol(")");
    return u'(' % quoted.join(u", ") % u')';
}

/// A SELECT, or a whole query in parentheses, which SQLite does not take as a part of a UNION.
Translator::Core Translator::queryPart(Level level)
{
    if (!m_in.takeSymbol("("))
        return core(level);
    Query inner = query(level);
    m_in.expectSymbol(")");
    return {u"SELECT * FROM (" % inner.sql % u')', {}, std::move(inner.columns)};
}

Translator::Core Translator::core(Level level)
{
    m_in.expectWord("select");
    Core result;
    QString head = QStringLiteral("SELECT ");
    if (m_in.takeWord("distinct"))
        head += u"DISTINCT ";
    else
        m_in.takeWord("all");
    result.top = top();

    const qsizetype list = m_in.position();
    const qsizetype from = fromOfThisCore();
    QString sourceText;
    qsizetype afterSources = from;
    bool readsItself = false;
    if (from >= 0) {
        m_in.seek(from + 1);
        m_readsItself = false;
        sourceText = u" FROM " % sources();
        readsItself = std::exchange(m_readsItself, false);
        afterSources = m_in.position();
        m_in.seek(list);
    }
    head += selectList(level, result.columns);
    if (m_in.atWord("into"))
        m_in.refuse(QStringLiteral("INTO"));
    if (from >= 0) {
        if (m_in.position() != from)
            m_in.refuseToken();
        m_in.seek(afterSources);
    }
    result.sql = head + sourceText + clauses(readsItself);
    return result;
}

/// " LIMIT n" for TOP n, which SQLite writes at the end.
QString Translator::top()
{
    const qsizetype at = m_in.peek().at;
    if (!m_in.takeWord("top"))
        return {};
    const bool bracketed = m_in.takeSymbol("(");
    if (m_in.peek().kind != Token::Kind::Number)
        m_in.refuseToken();
    const QString count = m_in.take().text.toString();
    if (bracketed)
        m_in.expectSymbol(")");
    if (m_in.atWord("percent"))
        m_in.refuse(QStringLiteral("TOP PERCENT"), at);
    if (m_in.atWord("with"))
        m_in.refuse(QStringLiteral("TOP WITH TIES"), at);
    return u" LIMIT " % count;
}

/// The token of this SELECT's FROM; -1 when it has none.
qsizetype Translator::fromOfThisCore() const
{
    int depth = 0;
    for (qsizetype ahead = 0;; ++ahead) {
        const Token &token = m_in.peek(ahead);
        if (token.kind == Token::Kind::End || token.isSymbol(QLatin1StringView(";")))
            return -1;
        if (token.isSymbol(QLatin1StringView("(")))
            ++depth;
        else if (token.isSymbol(QLatin1StringView(")")) && --depth < 0)
            return -1;
        if (depth > 0 || token.kind != Token::Kind::Word)
            continue;
        if (token.isWord(QLatin1StringView("from")))
            return m_in.position() + ahead;
        if (token.isWord(QLatin1StringView("union")) || token.isWord(QLatin1StringView("select")))
            return -1;
    }
}

QString Translator::selectList(Level level, std::vector<QueryColumn> &columns)
{
    QString sql = selectItem(level, columns);
    while (m_in.takeSymbol(","))
        sql += u", " % selectItem(level, columns);
    return sql;
}

QString Translator::selectItem(Level level, std::vector<QueryColumn> &columns)
{
    const auto isName = [this](qsizetype ahead) {
        const Token &token = m_in.peek(ahead);
        return token.kind == Token::Kind::Name
            || (token.kind == Token::Kind::Word && !isReserved(token));
    };
    const auto symbolAt = [this](qsizetype ahead, const char *symbol) {
        return m_in.peek(ahead).isSymbol(QLatin1StringView(symbol));
    };
    if (m_in.takeSymbol("*"))
        return star({}, columns);
    if (isName(0) && symbolAt(1, ".") && symbolAt(2, "*")) {
        const QString qualifier = unquoted(m_in.take());
        m_in.seek(m_in.position() + 2);
        return star(qualifier, columns);
    }
    if (m_in.peek().kind == Token::Kind::Variable)
        m_in.refuseToken();
    QString alias;
    if (isName(0) && symbolAt(1, "=")) { // Total = a + b
        alias = unquoted(m_in.take());
        m_in.take();
    }
    const Expression item = additive();
    if (alias.isEmpty())
        alias = optionalAlias();
    // Without an alias SQLite is free in its names: the query's own word, or none for an
    // expression.
    const bool named = !alias.isEmpty() || level == Level::Outermost;
    const QString name = alias.isEmpty() ? item.column : alias;
    columns.push_back({name, item.type, {}, {}});
    return named ? item.sql % u" AS " % quotedName(name) : item.sql;
}

QString Translator::star(const QString &qualifier, std::vector<QueryColumn> &columns)
{
    for (const Source &source : m_scopes.back()) {
        if (!qualifier.isEmpty() && qualifier.compare(source.name, Qt::CaseInsensitive) != 0)
            continue;
        if (source.table.isEmpty())
            columns.insert(columns.end(), source.columns.begin(), source.columns.end());
        else
            columns.push_back({{}, {}, source.catalogue, source.table});
    }
    return qualifier.isEmpty() ? QStringLiteral("*") : quotedName(qualifier) + u".*";
}

/// A common table that reads itself counts its rows, since it may have no end.
QString Translator::clauses(bool readsItself)
{
    QString sql;
    if (m_in.takeWord("where"))
        sql += (readsItself ? u" WHERE corvane_recursion() AND (" : u" WHERE (") % condition().sql
            % u')';
    else if (readsItself)
        sql += u" WHERE corvane_recursion()";
    if (m_in.takeWord("group")) {
        m_in.expectWord("by");
        sql += u" GROUP BY " % expressionList();
        if (m_in.atWord("with"))
            m_in.refuse(u"WITH " % m_in.peek(1).text.toString().toUpper());
    }
    if (m_in.takeWord("having"))
        sql += u" HAVING " % condition().sql;
    return sql;
}

QString Translator::orderBy()
{
    if (!m_in.takeWord("order"))
        return {};
    m_in.expectWord("by");
    QStringList terms;
    do {
        QString term = additive().sql;
        if (m_in.takeWord("desc"))
            term += u" DESC";
        else
            m_in.takeWord("asc");
        terms += term;
    } while (m_in.takeSymbol(","));
    if (m_in.atWord("offset"))
        m_in.refuse(QStringLiteral("OFFSET"));
    return u" ORDER BY " % terms.join(u", ");
}

QString Translator::expressionList()
{
    QString sql = additive().sql;
    while (m_in.takeSymbol(","))
        sql += u", " % additive().sql;
    return sql;
}

/// "AS name", "AS 'name'" or just "name"; empty without one.
QString Translator::optionalAlias()
{
    const bool announced = m_in.takeWord("as");
    const Token &token = m_in.peek();
    const bool isName = token.kind == Token::Kind::Name || token.kind == Token::Kind::Text
        || (token.kind == Token::Kind::Word && !isReserved(token));
    if (isName)
        return unquoted(m_in.take());
    if (announced)
        m_in.refuseToken();
    return {};
}

} // namespace corvane::embedded

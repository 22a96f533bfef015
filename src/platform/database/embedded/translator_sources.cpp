#include "platform/database/embedded/translator.h"

#include <algorithm>
#include <array>

namespace corvane::embedded {

namespace {

constexpr std::array kHints{"nolock", "readuncommitted", "readcommitted", "readpast", "rowlock",
    "paglock", "tablock", "holdlock", "updlock", "xlock", "nowait", "forceseek", "forcescan"};

bool isHint(const Token &token)
{
    return std::ranges::any_of(
        kHints, [&](const char *hint) { return token.isWord(QLatin1StringView(hint)); });
}

bool same(const QString &a, const QString &b)
{
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

} // namespace

QString Translator::sources()
{
    QString sql = joined();
    while (m_in.takeSymbol(","))
        sql += u", " % joined();
    return sql;
}

QString Translator::joined()
{
    QString sql = source();
    for (QString next = join(sql); !next.isEmpty(); next = join(sql))
        sql = next;
    return sql;
}

/// One join behind `left`; empty when the sources end here. "a JOIN b JOIN c ON ... ON ..." joins
/// the latter two first, for which SQLite wants parentheses.
QString Translator::join(const QString &left)
{
    const QString word = joinWord();
    if (word.isEmpty())
        return {};
    const Nesting nesting(*this);
    QString right = source();
    if (word == u" CROSS JOIN ")
        return left % word % right;
    while (!m_in.takeWord("on")) {
        const QString inner = join(right);
        if (inner.isEmpty())
            m_in.refuseToken();
        right = u'(' % inner % u')';
    }
    return left % word % right % u" ON " % condition().sql;
}

/// " LEFT JOIN " and its like; empty when the sources end here.
QString Translator::joinWord()
{
    constexpr std::array kSides{"inner", "left", "right", "full", "cross"};
    if ((m_in.atWord("cross") || m_in.atWord("outer"))
        && m_in.peek(1).isWord(QLatin1StringView("apply")))
        m_in.refuse(m_in.peek().text.toString().toUpper() % u" APPLY");
    QString side;
    for (const char *word : kSides)
        if (side.isEmpty() && m_in.takeWord(word))
            side = QString::fromLatin1(word).toUpper() + u' ';
    if (!side.isEmpty())
        m_in.takeWord("outer");
    if (side.isEmpty() && !m_in.atWord("join"))
        return {};
    m_in.expectWord("join");
    return u' ' % side % u"JOIN ";
}

QString Translator::source()
{
    const Nesting nesting(*this);
    const Token &token = m_in.peek();
    if (!token.isSymbol(QLatin1StringView("(")))
        return storedTable();
    qsizetype ahead = 1;
    while (m_in.peek(ahead).isSymbol(QLatin1StringView("(")))
        ++ahead;
    if (m_in.peek(ahead).isWord(QLatin1StringView("select")))
        return derivedTable();
    m_in.take();
    QString sql = u'(' % sources() % u')';
    m_in.expectSymbol(")");
    return sql;
}

QString Translator::storedTable()
{
    const qsizetype at = m_in.peek().at;
    if (m_in.atWord("openrowset") || m_in.atWord("openquery"))
        m_in.refuse(m_in.peek().text.toString().toUpper());
    const QStringList parts = nameParts();
    if (parts.size() > 3)
        m_in.refuse(QStringLiteral("names with a linked server"), at);
    Source table;
    table.table = parts.last();
    QString sql = quotedName(table.table);
    if (parts.size() > 1)
        checkSchema(parts[parts.size() - 2], at);
    if (parts.size() == 3) {
        table.catalogue = parts[0];
        sql = quotedName(table.catalogue) % u'.' % sql;
        m_catalogues += table.catalogue;
    }
    dropHints();
    const QString alias = optionalAlias();
    dropHints();
    refuseSourceEnd();
    table.name = alias.isEmpty() ? table.table : alias;
    const auto common = std::ranges::find_if(m_commonTables,
        [&](const Source &c) { return parts.size() == 1 && same(c.name, table.table); });
    if (common != m_commonTables.end()) {
        table.columns = common->columns;
        m_readsItself = m_readsItself || common->reading;
        table.table.clear();
    }
    m_scopes.back().push_back(std::move(table));
    return alias.isEmpty() ? sql : sql % u" AS " % quotedName(alias);
}

QString Translator::derivedTable()
{
    m_in.expectSymbol("(");
    Query inner = query(Level::Inner);
    m_in.expectSymbol(")");
    const QString alias = optionalAlias();
    if (m_in.atSymbol("("))
        m_in.refuse(QStringLiteral("a list of column names behind a table's alias"));
    refuseSourceEnd();
    m_scopes.back().push_back({alias, {}, {}, std::move(inner.columns)});
    return u'(' % inner.sql % u')' % (alias.isEmpty() ? QString() : u" AS " % quotedName(alias));
}

/// "WITH (NOLOCK)" and the older "(NOLOCK)": a file that is only read needs no lock hints.
void Translator::dropHints()
{
    const bool with = m_in.atWord("with") && m_in.peek(1).isSymbol(QLatin1StringView("("));
    if (with)
        m_in.take();
    if (!m_in.atSymbol("("))
        return;
    if (!isHint(m_in.peek(1)))
        m_in.refuse(with ? u"the table hint " % m_in.peek(1).text
                         : QStringLiteral("table-valued functions"));
    m_in.take();
    while (isHint(m_in.peek()) || m_in.atSymbol(","))
        m_in.take();
    m_in.expectSymbol(")");
}

void Translator::refuseSourceEnd()
{
    for (const char *word : {"pivot", "unpivot", "tablesample"})
        if (m_in.atWord(word))
            m_in.refuse(QString::fromLatin1(word).toUpper());
}

QString Translator::name()
{
    const Token &token = m_in.peek();
    if (token.kind != Token::Kind::Name && (token.kind != Token::Kind::Word || isReserved(token)))
        m_in.refuseToken();
    return unquoted(m_in.take());
}

/// The parts of "a.b.c"; a part left out, as in "a..c", is empty.
QStringList Translator::nameParts()
{
    QStringList parts;
    do {
        const Token &token = m_in.peek();
        if (token.isSymbol(QLatin1StringView(".")) && !parts.isEmpty()) {
            parts += QString();
            continue;
        }
        parts += name();
    } while (m_in.takeSymbol("."));
    return parts;
}

void Translator::checkSchema(const QString &schema, qsizetype at)
{
    if (!schema.isEmpty() && !same(schema, QStringLiteral("dbo")))
        m_in.refuse(u"the schema " % schema % u" (only dbo)", at);
}

/// The innermost SELECT that has such a column decides; without a qualifier any of its sources may.
SqlType Translator::columnType(const QString &qualifier, const QString &column) const
{
    for (auto scope = m_scopes.rbegin(); scope != m_scopes.rend(); ++scope) {
        for (const Source &source : *scope) {
            bool found = false;
            if (!qualifier.isEmpty() && !same(qualifier, source.name))
                continue;
            const SqlType type = sourceColumnType(source, column, found);
            if (found)
                return type;
        }
    }
    return {};
}

SqlType Translator::sourceColumnType(const Source &source, const QString &column, bool &found) const
{
    const auto stored = [&](const QString &catalogue, const QString &table) {
        const SqlType type = m_settings.columnType(catalogue, table, column);
        found = type.known();
        return type;
    };
    if (!source.table.isEmpty())
        return stored(source.catalogue, source.table);
    for (const QueryColumn &candidate : source.columns) {
        found = candidate.table.isEmpty() && same(candidate.name, column);
        if (found)
            return candidate.type;
        if (candidate.table.isEmpty())
            continue;
        if (const SqlType type = stored(candidate.catalogue, candidate.table); found)
            return type;
    }
    return {};
}

} // namespace corvane::embedded

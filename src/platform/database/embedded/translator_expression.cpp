#include "platform/database/embedded/translator.h"

#include <array>

namespace corvane::embedded {

namespace {

struct Comparison
{
    const char *server;
    QLatin1StringView sqlite;
};

constexpr std::array kComparisons{
    Comparison{"=", QLatin1StringView(" = ")},
    Comparison{"<>", QLatin1StringView(" <> ")},
    Comparison{"!=", QLatin1StringView(" <> ")},
    Comparison{"<=", QLatin1StringView(" <= ")},
    Comparison{">=", QLatin1StringView(" >= ")},
    Comparison{"<", QLatin1StringView(" < ")},
    Comparison{">", QLatin1StringView(" > ")},
    Comparison{"!<", QLatin1StringView(" >= ")},
    Comparison{"!>", QLatin1StringView(" <= ")},
};

SqlType numberType(QStringView digits)
{
    constexpr qsizetype kMostWhole = 18;
    if (digits.contains(u'e', Qt::CaseInsensitive))
        return {.kind = ValueKind::Real};
    while (digits.startsWith(u'0'))
        digits = digits.sliced(1);
    const qsizetype point = digits.indexOf(u'.');
    if (point < 0 && digits.size() <= kMostWhole)
        return {.kind = ValueKind::Integer, .precision = std::max(int(digits.size()), 1)};
    const qsizetype scale = point < 0 ? 0 : digits.size() - point - 1;
    return {.kind = ValueKind::Decimal,
        .scale = int(scale),
        .precision = int(std::max<qsizetype>(digits.size() - (point < 0 ? 0 : 1), 1))};
}

} // namespace

Expression Translator::condition()
{
    Expression first = conjunction();
    if (!m_in.atWord("or"))
        return first;
    QStringList parts{first.sql};
    while (m_in.takeWord("or"))
        parts += conjunction().sql;
    return compound(balanced(parts, u" OR "));
}

Expression Translator::conjunction()
{
    Expression first = negation();
    if (!m_in.atWord("and"))
        return first;
    QStringList parts{first.sql};
    while (m_in.takeWord("and"))
        parts += negation().sql;
    return compound(balanced(parts, u" AND "));
}

Expression Translator::negation()
{
    if (!m_in.takeWord("not"))
        return predicate();
    const Nesting nesting(*this);
    return compound(u"NOT " % negation().sql);
}

Expression Translator::predicate()
{
    const Expression left = additive();
    if (m_in.takeWord("is")) {
        const bool negated = m_in.takeWord("not");
        m_in.expectWord("null");
        return compound(left.sql % (negated ? u" IS NOT NULL" : u" IS NULL"));
    }
    const bool negated = m_in.takeWord("not");
    if (m_in.takeWord("between"))
        return between(left, negated);
    if (m_in.takeWord("in"))
        return inList(left, negated);
    if (m_in.takeWord("like"))
        return like(left, negated);
    if (negated)
        m_in.refuseToken();
    return comparison(left);
}

Expression Translator::comparison(Expression left)
{
    for (const Comparison &c : kComparisons) {
        if (!m_in.takeSymbol(c.server))
            continue;
        for (const char *word : {"all", "any", "some"})
            if (m_in.atWord(word))
                m_in.refuse(u"a comparison with " % QString::fromLatin1(word).toUpper());
        Expression right = additive();
        const std::array<Expression *, 2> both{&left, &right};
        align(both, Doubt::ReadDate);
        return compound(left.sql % c.sqlite % right.sql);
    }
    if (m_in.atSymbol("*="))
        m_in.refuse(QStringLiteral("the outer join *="));
    return left;
}

Expression Translator::between(Expression left, bool negated)
{
    Expression low = additive();
    m_in.expectWord("and");
    Expression high = additive();
    const std::array<Expression *, 3> all{&left, &low, &high};
    align(all, Doubt::ReadDate);
    return compound(
        left.sql % (negated ? u" NOT BETWEEN " : u" BETWEEN ") % low.sql % u" AND " % high.sql);
}

Expression Translator::inList(Expression left, bool negated)
{
    m_in.expectSymbol("(");
    const QString word = negated ? QStringLiteral(" NOT IN (") : QStringLiteral(" IN (");
    if (m_in.atWord("select") || m_in.atWord("with")) {
        const Query inner = query(Level::Inner);
        m_in.expectSymbol(")");
        return compound(left.sql % word % inner.sql % u')');
    }
    std::vector<Expression> all{std::move(left)};
    do
        all.push_back(additive());
    while (m_in.takeSymbol(","));
    m_in.expectSymbol(")");
    align(all, Doubt::ReadDate);
    QStringList items;
    for (size_t i = 1; i < all.size(); ++i)
        items += all[i].sql;
    return compound(all[0].sql % word % items.join(u", ") % u')');
}

/// SQLite's own LIKE is used where it means the same: for a quoted pattern without a [set].
Expression Translator::like(const Expression &subject, bool negated)
{
    const Expression left = asText(subject);
    const Expression pattern = additive();
    const QString escape = m_in.takeWord("escape") ? additive().sql : QString();
    const QString word = negated ? QStringLiteral("NOT ") : QString();
    if (pattern.literal && !pattern.literal->contains(u'[')) {
        const QString tail = escape.isEmpty() ? QString() : u" ESCAPE " % escape;
        return compound(left.sql % u' ' % word % u"LIKE " % pattern.sql % tail);
    }
    return compound(word % u"corvane_like(" % left.sql % u", " % pattern.sql % u", "
        % (escape.isEmpty() ? QStringLiteral("NULL") : escape) % u')');
}

Expression Translator::primary()
{
    const Nesting nesting(*this);
    const Token token = m_in.peek();
    switch (token.kind) {
    case Token::Kind::Text:
        return {token.text.toString(), {ValueKind::Text}, unquoted(m_in.take()), {}, true};
    case Token::Kind::Number:
        m_in.take();
        return primaryOf(token.text.toString(), numberType(token.text));
    case Token::Kind::Binary:
        m_in.take();
        return primaryOf(
            u"x'" % QString(token.text.size() % 2, u'0') % token.text.sliced(2) % u'\'',
            {ValueKind::Bytes});
    case Token::Kind::Symbol:
        if (m_in.atSymbol("("))
            return parenthesised();
        m_in.refuseToken();
    default:
        break;
    }
    if (m_in.takeWord("null"))
        return primaryOf(QStringLiteral("NULL"));
    if (m_in.atWord("case"))
        return caseExpression();
    if (m_in.takeWord("exists"))
        return primaryOf(u"EXISTS " % scalarQuery().sql);
    return atCall() ? call() : columnReference();
}

Expression Translator::parenthesised()
{
    qsizetype ahead = 1;
    while (m_in.peek(ahead).isSymbol(QLatin1StringView("(")))
        ++ahead;
    if (m_in.peek(ahead).isWord(QLatin1StringView("select")) && ahead == 1)
        return scalarQuery();
    m_in.expectSymbol("(");
    const Expression inner = condition();
    m_in.expectSymbol(")");
    return {u'(' % inner.sql % u')', inner.type, inner.literal, {}, true};
}

Expression Translator::scalarQuery()
{
    m_in.expectSymbol("(");
    const Query inner = query(Level::Inner);
    m_in.expectSymbol(")");
    const bool typed = inner.columns.size() == 1 && inner.columns[0].table.isEmpty();
    return primaryOf(u'(' % inner.sql % u')', typed ? inner.columns[0].type : SqlType());
}

/// "column", "table.column", "dbo.table.column" or "catalogue.dbo.table.column".
Expression Translator::columnReference()
{
    const qsizetype at = m_in.peek().at;
    const QStringList parts = nameParts();
    const qsizetype count = parts.size();
    if (m_in.atSymbol("("))
        m_in.refuse(u"the function " % parts.join(u'.'), at);
    if (count > 4)
        m_in.refuse(QStringLiteral("names with a linked server"), at);
    if (count > 2)
        checkSchema(parts[count - 3], at);
    QString sql = quotedName(parts.last());
    if (count > 1)
        sql = quotedName(parts[count - 2]) % u'.' % sql;
    if (count > 3) {
        sql = quotedName(parts[0]) % u'.' % sql;
        m_catalogues += parts[0];
    }
    const QString qualifier = count > 1 ? parts[count - 2] : QString();
    return {sql, columnType(qualifier, parts.last()), {}, parts.last(), true};
}

Expression Translator::caseExpression()
{
    m_in.expectWord("case");
    std::vector<Expression> tests;
    std::vector<Expression> results;
    const bool compares = !m_in.atWord("when");
    if (compares)
        tests.push_back(additive());
    while (m_in.takeWord("when")) {
        tests.push_back(compares ? additive() : condition());
        m_in.expectWord("then");
        results.push_back(additive());
    }
    const size_t branches = results.size();
    if (branches == 0)
        m_in.refuseToken();
    if (m_in.takeWord("else"))
        results.push_back(additive());
    m_in.expectWord("end");
    if (compares)
        align(tests, Doubt::ReadDate);
    const SqlType type = align(results, Doubt::KeepText);
    QString sql = QStringLiteral("CASE");
    if (compares)
        sql += u' ' % tests[0].sql;
    for (size_t i = 0; i < branches; ++i)
        sql += u" WHEN " % tests[i + (compares ? 1 : 0)].sql % u" THEN " % results[i].sql;
    if (results.size() > branches)
        sql += u" ELSE " % results.back().sql;
    return primaryOf(sql + u" END", type);
}

} // namespace corvane::embedded

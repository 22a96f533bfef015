#include "platform/database/embedded/translator.h"

namespace corvane::embedded {

namespace {

bool isFraction(const SqlType &type)
{
    return type.kind == ValueKind::Decimal || type.kind == ValueKind::Real;
}

/// A quoted text that is no number makes every "+" beside it a joining of texts.
bool surelyJoins(const Expression &e)
{
    bool number = false;
    if (e.literal)
        e.literal->trimmed().toDouble(&number);
    return e.literal && !number && !e.literal->trimmed().isEmpty();
}

/// The text of the pair becomes a date.
void readAsDate(Expression &text, const SqlType &type)
{
    text = primaryOf(
        u"corvane_to_moment(" % text.sql % u", " % QString::number(int(type.kind)) % u", NULL)",
        type);
}

/// A text beside a number is read as such a number, beside a date as a date, as the server does it.
void meet(Expression &left, Expression &right)
{
    if (left.type.isText() && right.type.isMoment())
        return readAsDate(left, right.type);
    if (right.type.isText() && left.type.isMoment())
        return readAsDate(right, left.type);
    if (left.type.isText() && right.type.isNumber())
        left = asNumber(left, right.type);
    else if (right.type.isText() && left.type.isNumber())
        right = asNumber(right, left.type);
}

/// A sum while it is read from left to right. Its parts stay in a list and become one flat call or
/// a tree of small height: of parentheses inside parentheses SQLite reads only some ninety.
class Addition
{
public:
    explicit Addition(Expression first)
        : m_sum(std::move(first))
    {
    }

    /// Numbers add and texts join at once where the types are known; else the running query
    /// decides.
    void add(Expression next)
    {
        meetNext(next);
        const SqlType &left = m_sum.type;
        const SqlType &right = next.type;
        if (left.isNumber() && right.isNumber())
            return append(Way::Numbers, u" + " % next.sql, sumType(left, right));
        const bool plain
            = !left.isNumber() && !right.isNumber() && !left.isMoment() && !right.isMoment();
        if (plain && ((left.isText() && right.isText()) || surelyJoins(m_sum) || surelyJoins(next)))
            return join(next);
        append(Way::Undecided, next.sql,
            right.isMoment()      ? right
                : left.isMoment() ? left
                                  : SqlType());
    }

    void subtract(Expression next)
    {
        meetNext(next);
        if (m_sum.type.isNumber() && next.type.isNumber())
            return append(Way::Numbers, u" - " % next.sql, sumType(m_sum.type, next.type));
        const SqlType type = m_sum.type.isMoment() ? m_sum.type : SqlType();
        const QString left = taken().sql;
        *this = Addition(primaryOf(u"corvane_subtract(" % left % u", " % next.sql % u')', type));
    }

    void join(const Expression &next)
    {
        append(Way::Texts, operand(next), {.kind = ValueKind::Text});
    }

    /// The sum so far; a single summand comes back as it went in.
    Expression taken()
    {
        if (m_way != Way::Single) {
            m_sum = m_way == Way::Undecided ? primaryOf(call(), m_sum.type)
                                            : compound(chain(), m_sum.type);
            m_parts.clear();
            m_way = Way::Single;
        }
        return m_sum;
    }

private:
    enum class Way { Single, Numbers, Texts, Undecided };

    /// A joined text that meets a number or a date is read as one whole.
    void meetNext(Expression &next)
    {
        if (m_sum.type.isText() && !next.type.isText())
            m_sum = taken();
        meet(m_sum, next);
    }

    void append(Way way, const QString &part, const SqlType &type)
    {
        if (m_way != way) {
            const Expression first = taken();
            m_parts = QStringList(way == Way::Texts ? operand(first) : first.sql);
            m_way = way;
        }
        m_parts += part;
        m_sum.type = type;
        m_sum.literal.reset();
        m_sum.column.clear();
    }

    QString chain() const
    {
        return m_way == Way::Texts ? balanced(m_parts, u" || ") : numbers(m_parts);
    }

    /// Every part but the very first brings its sign along.
    static QString numbers(const QStringList &parts)
    {
        constexpr qsizetype kMostInARow = 100;
        if (parts.size() <= kMostInARow)
            return parts.join(QString());
        const qsizetype half = parts.size() / 2;
        const QStringList rest = QStringList(QStringLiteral("0")) + parts.sliced(half);
        return u'(' % numbers(parts.first(half)) % u") + (" % numbers(rest) % u')';
    }

    /// From left to right in groups, since "1" + "2" + 3 is 15; SQLite takes 127 arguments.
    QString call() const
    {
        constexpr qsizetype kMostArguments = 100;
        QString sql = m_parts.first();
        for (qsizetype i = 1; i < m_parts.size(); i += kMostArguments)
            sql = u"corvane_add(" % sql % u", "
                % m_parts.sliced(i, std::min(kMostArguments, m_parts.size() - i)).join(u", ")
                % u')';
        return sql;
    }

    Expression m_sum;
    QStringList m_parts;
    Way m_way = Way::Single;
};

/// The server fails where SQLite's quotient is null: only a number in the text that is not zero
/// needs no look at every row.
bool isSafeDivisor(const Expression &e)
{
    bool isNumber = false;
    return e.sql.toDouble(&isNumber) != 0 && isNumber;
}

Expression quotient(const Expression &left, const Expression &right)
{
    SqlType type = quotientType(left.type, right.type);
    if (type.kind == ValueKind::Integer && isSafeDivisor(right))
        return compound(operand(left) % u" / " % right.sql, type);
    const QString both = left.sql % u", " % right.sql;
    if (type.kind == ValueKind::Decimal)
        return primaryOf(
            u"corvane_quotient(" % both % u", " % QString::number(type.scale) % u')', type);
    // A real that happens to be whole may be stored as an integer and would divide like one.
    if (isFraction(left.type) || isFraction(right.type))
        type = {.kind = ValueKind::Real};
    return primaryOf(
        u"corvane_divide(" % both % u", " % (type.kind == ValueKind::Real ? u'1' : u'0') % u')',
        type);
}

Expression remainder(const Expression &left, const Expression &right)
{
    const SqlType type = remainderType(left.type, right.type);
    if (type.kind == ValueKind::Integer && isSafeDivisor(right))
        return compound(operand(left) % u" % " % right.sql, type);
    return primaryOf(u"corvane_remainder(" % left.sql % u", " % right.sql % u')', type);
}

/// SQLite's two collations for the server's names, which say "_CI" or "_CS" and the like.
QString collation(const TokenReader &in, const QString &name)
{
    if (name.contains(u"_CI", Qt::CaseInsensitive)
        || name.compare(u"nocase", Qt::CaseInsensitive) == 0)
        return QStringLiteral("NOCASE");
    if (name.contains(u"_CS", Qt::CaseInsensitive) || name.contains(u"_BIN", Qt::CaseInsensitive)
        || name.compare(u"binary", Qt::CaseInsensitive) == 0)
        return QStringLiteral("BINARY");
    in.refuse(u"the collation " % name);
}

} // namespace

Expression Translator::additive()
{
    Addition sum(multiplicative());
    for (;;) {
        if (m_in.takeSymbol("+"))
            sum.add(multiplicative());
        else if (m_in.takeSymbol("-"))
            sum.subtract(multiplicative());
        else if (m_in.takeSymbol("||"))
            sum.join(multiplicative());
        else if (m_in.takeSymbol("&"))
            sum = Addition(joinedBits(sum.taken(), u" & ", multiplicative()));
        else if (m_in.takeSymbol("|"))
            sum = Addition(joinedBits(sum.taken(), u" | ", multiplicative()));
        else
            return sum.taken();
    }
}

/// The server gives bits the rank of "+", SQLite does not: hence the parentheses.
Expression Translator::joinedBits(const Expression &left, QStringView sign, const Expression &right)
{
    return primaryOf(u'(' % operand(left) % sign % operand(right) % u')', {ValueKind::Integer});
}

Expression Translator::multiplicative()
{
    Expression left = unary();
    for (;;) {
        const Token sign = m_in.peek();
        if (!m_in.takeSymbol("*") && !m_in.takeSymbol("/") && !m_in.takeSymbol("%"))
            return left;
        Expression right = unary();
        meet(left, right);
        if (sign.text == u"*")
            left = compound(
                operand(left) % u" * " % operand(right), productType(left.type, right.type));
        else
            left = sign.text == u"/" ? quotient(left, right) : remainder(left, right);
    }
}

Expression Translator::unary()
{
    if (m_in.takeSymbol("-")) {
        const Nesting nesting(*this);
        const Expression value = unary();
        return compound(u"- " % operand(value), value.type);
    }
    while (m_in.takeSymbol("+")) { }
    Expression value = primary();
    while (m_in.takeWord("collate"))
        value = compound(
            operand(value) % u" COLLATE " % collation(m_in, unquoted(m_in.take())), value.type);
    return value;
}

} // namespace corvane::embedded

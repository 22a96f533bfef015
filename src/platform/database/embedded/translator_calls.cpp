#include "platform/database/embedded/translator.h"

#include "platform/database/embedded/date_parts.h"
#include "platform/database/error.h"

#include <algorithm>
#include <array>

namespace corvane::embedded {

namespace {

constexpr int kAnyNumber = 100;

/// What a call gives: a fixed kind, or the type of its first argument; its first `texts` arguments
/// are texts, or become such.
struct PlainCall
{
    const char *server;
    const char *sqlite;
    int least;
    int most;
    ValueKind kind;
    int texts = 0;
};

/// Instead of a kind: that of the first argument.
constexpr ValueKind kAsFirst = ValueKind::Null;

constexpr std::array kPlainCalls{
    PlainCall{"abs", "abs", 1, 1, kAsFirst},
    PlainCall{"ceiling", "ceiling", 1, 1, kAsFirst},
    PlainCall{"char", "char", 1, 1, ValueKind::Text},
    PlainCall{"charindex", "corvane_charindex", 2, 3, ValueKind::Integer, 2},
    PlainCall{"concat", "corvane_concat", 2, kAnyNumber, ValueKind::Text, kAnyNumber},
    PlainCall{"count", "count", 1, 1, ValueKind::Integer},
    PlainCall{"count_big", "count", 1, 1, ValueKind::Integer},
    PlainCall{"dense_rank", "dense_rank", 0, 0, ValueKind::Integer},
    PlainCall{"exp", "exp", 1, 1, ValueKind::Real},
    PlainCall{"floor", "floor", 1, 1, kAsFirst},
    PlainCall{"left", "corvane_left", 2, 2, ValueKind::Text, 1},
    PlainCall{"len", "corvane_len", 1, 1, ValueKind::Integer, 1},
    PlainCall{"lower", "corvane_lower", 1, 1, ValueKind::Text, 1},
    PlainCall{"ltrim", "ltrim", 1, 1, ValueKind::Text, 1},
    PlainCall{"max", "max", 1, 1, kAsFirst},
    PlainCall{"min", "min", 1, 1, kAsFirst},
    PlainCall{"nchar", "char", 1, 1, ValueKind::Text},
    PlainCall{"rank", "rank", 0, 0, ValueKind::Integer},
    PlainCall{"replace", "corvane_replace", 3, 3, ValueKind::Text, 3},
    PlainCall{"replicate", "corvane_replicate", 2, 2, ValueKind::Text, 1},
    PlainCall{"reverse", "corvane_reverse", 1, 1, ValueKind::Text, 1},
    PlainCall{"right", "corvane_right", 2, 2, ValueKind::Text, 1},
    PlainCall{"round", "corvane_round", 2, 3, kAsFirst},
    PlainCall{"row_number", "row_number", 0, 0, ValueKind::Integer},
    PlainCall{"rtrim", "rtrim", 1, 1, ValueKind::Text, 1},
    PlainCall{"sign", "sign", 1, 1, kAsFirst},
    PlainCall{"space", "corvane_space", 1, 1, ValueKind::Text},
    PlainCall{"sqrt", "sqrt", 1, 1, ValueKind::Real},
    PlainCall{"str", "corvane_str", 1, 3, ValueKind::Text},
    PlainCall{"stuff", "corvane_stuff", 4, 4, ValueKind::Text, 1},
    PlainCall{"substring", "corvane_substring", 3, 3, ValueKind::Text, 1},
    PlainCall{"trim", "trim", 1, 1, ValueKind::Text, 1},
    PlainCall{"unicode", "unicode", 1, 1, ValueKind::Integer, 1},
    PlainCall{"upper", "corvane_upper", 1, 1, ValueKind::Text, 1},
};

bool isNamed(const Token &token, const char *name)
{
    return token.isWord(QLatin1StringView(name));
}

} // namespace

bool Translator::atCall() const
{
    const Token &token = m_in.peek();
    if (token.kind != Token::Kind::Word)
        return false;
    if (isNamed(token, "current_timestamp"))
        return true;
    const bool takesWord = !isReserved(token) || isNamed(token, "left") || isNamed(token, "right");
    return takesWord && m_in.peek(1).isSymbol(QLatin1StringView("("));
}

Expression Translator::call()
{
    const Token name = m_in.take();
    if (isNamed(name, "current_timestamp"))
        return currentMoment();
    m_in.expectSymbol("(");
    bool found = true;
    const Expression special = specialCall(name, found);
    return found ? special : plainCall(name);
}

/// The calls whose arguments or types follow rules of their own.
Expression Translator::specialCall(const Token &name, bool &found)
{
    if (isNamed(name, "getdate") || isNamed(name, "sysdatetime")) {
        m_in.expectSymbol(")");
        return currentMoment();
    }
    if (isNamed(name, "dateadd"))
        return dateAdd();
    if (isNamed(name, "datediff"))
        return dateDifference();
    if (isNamed(name, "datepart"))
        return datePartOf("corvane_datepart", ValueKind::Integer);
    if (isNamed(name, "datename"))
        return datePartOf("corvane_datename", ValueKind::Text);
    if (isNamed(name, "year"))
        return fixedPartOf(int(DatePart::Year));
    if (isNamed(name, "month"))
        return fixedPartOf(int(DatePart::Month));
    if (isNamed(name, "day"))
        return fixedPartOf(int(DatePart::Day));
    if (isNamed(name, "cast"))
        return cast();
    if (isNamed(name, "convert"))
        return convert();
    if (isNamed(name, "iif"))
        return conditional();
    if (isNamed(name, "isnull"))
        return knownOrElse(name);
    if (isNamed(name, "coalesce"))
        return firstKnown(name, "coalesce(", kAnyNumber);
    if (isNamed(name, "nullif"))
        return firstKnown(name, "nullif(", 2);
    if (isNamed(name, "sum"))
        return total(name);
    if (isNamed(name, "avg"))
        return average(name);
    found = false;
    return {};
}

/// A call that only needs SQLite's name for it.
Expression Translator::plainCall(const Token &name)
{
    const auto known = std::ranges::find_if(
        kPlainCalls, [&](const PlainCall &c) { return isNamed(name, c.server); });
    if (known == kPlainCalls.end())
        m_in.refuse(u"the function " % name.text.toString().toUpper(), name.at);
    const std::vector<Expression> all = arguments(name, known->least, known->most);
    QStringList texts;
    for (const Expression &argument : all)
        texts += texts.size() < known->texts ? asText(argument).sql : argument.sql;
    return primaryOf(
        QString::fromLatin1(known->sqlite) % u'(' % texts.join(u", ") % u')' % window(),
        known->kind == kAsFirst && !all.empty() ? all[0].type : SqlType{known->kind});
}

/// Up to and with the closing parenthesis; "*" and DISTINCT stand as SQLite writes them too.
std::vector<Expression> Translator::arguments(const Token &name, int least, int most)
{
    std::vector<Expression> all;
    if (m_in.takeSymbol("*")) {
        all.push_back(primaryOf(QStringLiteral("*")));
    } else if (!m_in.atSymbol(")")) {
        const QString distinct
            = m_in.takeWord("distinct") ? QStringLiteral("DISTINCT ") : QString();
        m_in.takeWord("all");
        do
            all.push_back(additive());
        while (m_in.takeSymbol(","));
        all[0].sql.prepend(distinct);
    }
    m_in.expectSymbol(")");
    if (int(all.size()) < least || int(all.size()) > most)
        throw DatabaseError(kStatementError,
            QStringLiteral(
                "The function %1 takes %2 arguments, not %3 (character %4 of the query).")
                .arg(name.text.toString().toUpper(),
                    least == most ? QString::number(least)
                                  : QStringLiteral("%1 to %2").arg(least).arg(most))
                .arg(all.size())
                .arg(name.at + 1));
    return all;
}

/// OVER (PARTITION BY ... ORDER BY ...) behind a call.
QString Translator::window()
{
    if (!m_in.takeWord("over"))
        return {};
    m_in.expectSymbol("(");
    QString sql;
    if (m_in.takeWord("partition")) {
        m_in.expectWord("by");
        sql = u"PARTITION BY " % expressionList();
    }
    sql += orderBy();
    if (!m_in.atSymbol(")"))
        m_in.refuse(u"the window frame " % m_in.peek().text.toString().toUpper());
    m_in.take();
    return u" OVER (" % sql % u')';
}

int Translator::datePart()
{
    const Token &token = m_in.peek();
    const auto part = datePartNamed(token.text);
    if (!part)
        m_in.refuse(u"the part of a date " % token.text);
    m_in.take();
    m_in.expectSymbol(",");
    return int(*part);
}

Expression Translator::dateAdd()
{
    const int part = datePart();
    const QString count = additive().sql;
    m_in.expectSymbol(",");
    const Expression moment = dateArgument();
    m_in.expectSymbol(")");
    const bool isDate = moment.type.kind == ValueKind::Date && !isPartOfDay(DatePart(part));
    return primaryOf(
        u"corvane_dateadd(" % QString::number(part) % u", " % count % u", " % moment.sql % u')',
        isDate || moment.type.kind == ValueKind::DateTime ? moment.type
                                                          : SqlType{ValueKind::DateTime});
}

Expression Translator::dateDifference()
{
    const int part = datePart();
    const Expression from = dateArgument();
    m_in.expectSymbol(",");
    const Expression to = dateArgument();
    m_in.expectSymbol(")");
    return primaryOf(
        u"corvane_datediff(" % QString::number(part) % u", " % from.sql % u", " % to.sql % u')',
        {ValueKind::Integer});
}

Expression Translator::datePartOf(const char *function, ValueKind kind)
{
    const int part = datePart();
    const Expression moment = dateArgument();
    m_in.expectSymbol(")");
    return primaryOf(
        QString::fromLatin1(function) % u'(' % QString::number(part) % u", " % moment.sql % u')',
        {kind});
}

Expression Translator::fixedPartOf(int part)
{
    const Expression moment = dateArgument();
    m_in.expectSymbol(")");
    return primaryOf(u"corvane_datepart(" % QString::number(part) % u", " % moment.sql % u')',
        {ValueKind::Integer});
}

Expression Translator::conditional()
{
    const Expression test = condition();
    m_in.expectSymbol(",");
    std::vector<Expression> branches{additive()};
    m_in.expectSymbol(",");
    branches.push_back(additive());
    m_in.expectSymbol(")");
    const SqlType type = align(branches, Doubt::KeepText);
    return primaryOf(
        u"iif(" % test.sql % u", " % branches[0].sql % u", " % branches[1].sql % u')', type);
}

/// ISNULL gives the type of its first argument, down to the length of a text.
Expression Translator::knownOrElse(const Token &name)
{
    std::vector<Expression> all = arguments(name, 2, 2);
    const SqlType type = all[0].type;
    Expression &other = all[1];
    if (type.isNumber() && other.type.isText()) {
        other = asNumber(other, type);
    } else if (type.isNumber() && other.type.isNumber()) {
        if (other.type.kind != type.kind)
            other = asNumber(other, type);
    } else if (type.isText() && other.type.known() && !other.type.isText()) {
        other = asText(other);
    } else {
        align(all, Doubt::KeepText);
    }
    const bool fits = other.literal && other.literal->size() <= type.length;
    if (type.isText() && type.length > 0 && !fits)
        other.sql = u"corvane_left(" % other.sql % u", " % QString::number(type.length) % u')';
    return primaryOf(u"coalesce(" % all[0].sql % u", " % other.sql % u')',
        type.known() || all[0].sql != u"NULL" ? type : other.type);
}

/// COALESCE and NULLIF: the arguments stand for each other.
Expression Translator::firstKnown(const Token &name, const char *function, int most)
{
    std::vector<Expression> all = arguments(name, 2, most);
    const SqlType type = align(all, Doubt::KeepText);
    QStringList texts;
    for (const Expression &argument : all)
        texts += argument.sql;
    return primaryOf(QString::fromLatin1(function) % texts.join(u", ") % u')', type);
}

/// SQLite's own sum of numbers with a point would lose cents over many rows.
Expression Translator::total(const Token &name)
{
    const std::vector<Expression> all = arguments(name, 1, 1);
    const SqlType type = all[0].type;
    const bool fraction = type.kind == ValueKind::Decimal || type.kind == ValueKind::Real;
    return primaryOf(
        (fraction ? u"corvane_sum(" : u"sum(") % all[0].sql % u')' % window(), totalType(type));
}

/// The server's average of whole numbers is a whole number, that of exact ones has six digits.
Expression Translator::average(const Token &name)
{
    const std::vector<Expression> all = arguments(name, 1, 1);
    const QString call = u"corvane_avg(" % all[0].sql % u')' % window();
    const SqlType type = averageType(all[0].type);
    if (type.kind == ValueKind::Integer)
        return primaryOf(u"CAST(" % call % u" AS INTEGER)", type);
    if (type.kind == ValueKind::Decimal)
        return primaryOf(
            u"corvane_quotient(" % call % u", 1, " % QString::number(type.scale) % u')', type);
    return primaryOf(call, {.kind = ValueKind::Real});
}

Expression Translator::currentMoment() const
{
    const qint64 day = m_settings.now.date().toJulianDay() - QDate(1970, 1, 1).toJulianDay();
    const Moment now{day * kMsPerDay + m_settings.now.time().msecsSinceStartOfDay()};
    return primaryOf(quotedText(QString::fromLatin1(momentText(now))), {ValueKind::DateTime});
}

} // namespace corvane::embedded

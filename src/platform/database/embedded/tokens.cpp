#include "platform/database/embedded/tokens.h"

#include "platform/database/embedded/dialect.h"
#include "platform/database/error.h"

#include <array>

namespace corvane::embedded {

namespace {

bool isNameStart(QChar c)
{
    return c.isLetter() || c == u'_' || c.isSurrogate();
}
bool isNamePart(QChar c)
{
    return isNameStart(c) || c.isDigit() || c.isMark() || c == u'$' || c == u'#' || c == u'@';
}
bool isDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

QString place(qsizetype at)
{
    return QStringLiteral(" (character %1 of the query).").arg(at + 1);
}

class Tokenizer
{
public:
    explicit Tokenizer(QStringView sql)
        : m_sql(sql)
    {
    }

    std::vector<Token> run()
    {
        std::vector<Token> tokens;
        while (skipBlanks(), m_at < m_sql.size())
            tokens.push_back(next());
        tokens.push_back({Token::Kind::End, {}, m_sql.size()});
        return tokens;
    }

private:
    QChar at(qsizetype index) const { return index < m_sql.size() ? m_sql[index] : QChar(); }

    [[noreturn]] void fail(const QString &what, qsizetype start) const
    {
        throw DatabaseError(kStatementError, what + place(start));
    }

    void skipBlanks()
    {
        for (;;) {
            if (at(m_at).isSpace())
                ++m_at;
            else if (at(m_at) == u'-' && at(m_at + 1) == u'-')
                while (m_at < m_sql.size() && m_sql[m_at] != u'\n')
                    ++m_at;
            else if (at(m_at) == u'/' && at(m_at + 1) == u'*')
                skipComment();
            else
                return;
        }
    }

    /// The server's block comments nest.
    void skipComment()
    {
        const qsizetype start = m_at;
        int depth = 0;
        do {
            if (m_at >= m_sql.size())
                fail(QStringLiteral("Missing end comment mark '*/'"), start);
            if (at(m_at) == u'/' && at(m_at + 1) == u'*') {
                ++depth;
                m_at += 2;
            } else if (at(m_at) == u'*' && at(m_at + 1) == u'/') {
                --depth;
                m_at += 2;
            } else {
                ++m_at;
            }
        } while (depth > 0);
    }

    Token next()
    {
        const QChar c = m_sql[m_at];
        if ((c == u'N' || c == u'n') && at(m_at + 1) == u'\'') {
            ++m_at;
            return quoted(Token::Kind::Text, u'\'');
        }
        if (c == u'\'')
            return quoted(Token::Kind::Text, u'\'');
        if (c == u'[')
            return quoted(Token::Kind::Name, u']');
        if (c == u'"')
            return quoted(Token::Kind::Name, u'"');
        if (isNameStart(c))
            return name(Token::Kind::Word);
        if (c == u'@')
            return name(Token::Kind::Variable);
        if (c == u'#')
            return name(Token::Kind::TempName);
        if (isDigit(c) || (c == u'.' && isDigit(at(m_at + 1))))
            return number();
        return symbol();
    }

    Token taken(Token::Kind kind, qsizetype length)
    {
        const Token token{kind, m_sql.sliced(m_at, length), m_at};
        m_at += length;
        return token;
    }

    Token quoted(Token::Kind kind, QChar close)
    {
        for (qsizetype end = m_at + 1; end < m_sql.size(); ++end) {
            if (m_sql[end].isNull())
                fail(QStringLiteral("The quoted text holds a NUL character"), m_at);
            if (m_sql[end] != close)
                continue;
            if (at(end + 1) != close)
                return taken(kind, end + 1 - m_at);
            ++end;
        }
        fail(QStringLiteral("Unclosed quotation mark"), m_at);
    }

    Token name(Token::Kind kind)
    {
        qsizetype end = m_at + 1;
        while (end < m_sql.size() && isNamePart(m_sql[end]))
            ++end;
        return taken(kind, end - m_at);
    }

    Token number()
    {
        if (m_sql[m_at] == u'0' && at(m_at + 1).toLower() == u'x') {
            qsizetype end = m_at + 2;
            while (QStringView(u"0123456789abcdefABCDEF").contains(at(end)) && end < m_sql.size())
                ++end;
            return taken(Token::Kind::Binary, end - m_at);
        }
        qsizetype end = m_at;
        while (isDigit(at(end)))
            ++end;
        if (at(end) == u'.')
            while (isDigit(at(++end))) { }
        if (at(end).toLower() == u'e') {
            qsizetype digits = end + 1;
            if (at(digits) == u'+' || at(digits) == u'-')
                ++digits;
            if (isDigit(at(digits))) {
                end = digits;
                while (isDigit(at(end)))
                    ++end;
            }
        }
        return taken(Token::Kind::Number, end - m_at);
    }

    Token symbol()
    {
        constexpr std::array kPairs{QLatin1StringView("<="), QLatin1StringView(">="),
            QLatin1StringView("<>"), QLatin1StringView("!="), QLatin1StringView("!<"),
            QLatin1StringView("!>"), QLatin1StringView("||"), QLatin1StringView("*=")};
        const QStringView rest = m_sql.sliced(m_at);
        for (const QLatin1StringView pair : kPairs)
            if (rest.startsWith(pair))
                return taken(Token::Kind::Symbol, 2);
        if (!QStringView(u"+-*/%(),.;=<>&|").contains(m_sql[m_at]))
            fail(QStringLiteral("The embedded database does not support the character %1")
                     .arg(m_sql[m_at].isPrint() ? QString(m_sql[m_at])
                                                : QString::number(m_sql[m_at].unicode())),
                m_at);
        return taken(Token::Kind::Symbol, 1);
    }

    QStringView m_sql;
    qsizetype m_at = 0;
};

QString doubled(QStringView text, QChar quote)
{
    QString result;
    result.reserve(text.size() + 2);
    result += quote;
    for (const QChar c : text) {
        result += c;
        if (c == quote)
            result += c;
    }
    return result += quote;
}

} // namespace

std::vector<Token> tokenize(QStringView sql)
{
    return Tokenizer(sql).run();
}

QString unquoted(const Token &token)
{
    if (token.kind != Token::Kind::Text && token.kind != Token::Kind::Name)
        return token.text.toString();
    const QChar close = token.text.back();
    return token.text.sliced(1, token.text.size() - 2)
        .toString()
        .replace(QString(2, close), QString(close));
}

QString quotedText(QStringView content)
{
    return doubled(content, u'\'');
}

QString quotedName(QStringView name)
{
    return doubled(name, u'"');
}

TokenReader::TokenReader(QStringView sql)
    : m_tokens(tokenize(sql))
{
}

const Token &TokenReader::peek(qsizetype ahead) const
{
    return m_tokens[size_t(std::min(m_position + ahead, qsizetype(m_tokens.size()) - 1))];
}

Token TokenReader::take()
{
    const Token token = peek();
    m_position = std::min(m_position + 1, qsizetype(m_tokens.size()) - 1);
    return token;
}

bool TokenReader::takeWord(const char *word)
{
    const bool found = atWord(word);
    if (found)
        take();
    return found;
}

bool TokenReader::takeSymbol(const char *symbol)
{
    const bool found = atSymbol(symbol);
    if (found)
        take();
    return found;
}

void TokenReader::expectWord(const char *word)
{
    if (!takeWord(word))
        refuseToken();
}

void TokenReader::expectSymbol(const char *symbol)
{
    if (!takeSymbol(symbol))
        refuseToken();
}

void TokenReader::refuse(const QString &construct, qsizetype at) const
{
    throw DatabaseError(
        kStatementError, u"The embedded database does not support " % construct % place(at));
}

void TokenReader::refuseToken() const
{
    const Token &token = peek();
    if (token.kind == Token::Kind::Variable || token.kind == Token::Kind::TempName)
        refuse(
            (token.kind == Token::Kind::Variable ? u"variables, here " : u"temporary tables, here ")
            % token.text);
    if (token.kind == Token::Kind::End)
        throw DatabaseError(kStatementError, QStringLiteral("The query ends too early."));
    throw DatabaseError(kStatementError,
        u"Incorrect syntax near '" % token.text.first(std::min<qsizetype>(token.text.size(), 40))
            % u'\'' % place(token.at));
}

} // namespace corvane::embedded

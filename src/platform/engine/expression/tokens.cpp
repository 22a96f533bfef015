#include "platform/engine/expression/tokens.h"

#include <array>

namespace corvane {

namespace {

struct Symbol
{
    QStringView text;
    QStringView
        instead; ///< what to write for a sign that other languages use; empty: it is one of ours
};

constexpr std::array kSymbols{Symbol{u"!=", u"<>"}, Symbol{u"==", u"="},
    Symbol{u"||", u"or, or & to join texts"}, Symbol{u"&&", u"and"}, Symbol{u"=<", u"<="},
    Symbol{u"=>", u">="}, Symbol{u"<=", {}}, Symbol{u">=", {}}, Symbol{u"<>", {}}, Symbol{u"+", {}},
    Symbol{u"-", {}}, Symbol{u"*", {}}, Symbol{u"/", {}}, Symbol{u"^", {}}, Symbol{u"&", {}},
    Symbol{u"=", {}}, Symbol{u"<", {}}, Symbol{u">", {}}, Symbol{u"(", {}}, Symbol{u")", {}},
    Symbol{u",", {}}, Symbol{u"%", u"mod"}, Symbol{u";", u"a comma"}};

bool isDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

bool isWordCharacter(QChar c)
{
    return c.isLetterOrNumber() || c == u'_';
}

/// Walks over one expression; the first fault ends it.
class TokenReader
{
public:
    explicit TokenReader(QStringView text)
        : m_text(text)
    {
    }

    std::variant<std::vector<Token>, ExpressionFault> read()
    {
        while (skipBlanks(), m_at < m_text.size()) {
            if (!readToken())
                return m_fault;
        }
        m_tokens.push_back({TokenKind::End, m_at, {}});
        return std::move(m_tokens);
    }

private:
    bool readToken()
    {
        const QChar c = m_text[m_at];
        if (isDigit(c) || (c == u'.' && m_at + 1 < m_text.size() && isDigit(m_text[m_at + 1])))
            return readNumber();
        if (c == u'\'' || c == u'"')
            return readEnclosed(TokenKind::Text, c, u"text");
        if (c == u'[')
            return readEnclosed(TokenKind::Column, u']', u"column name");
        if (c == u'{')
            return readEnclosed(TokenKind::Parameter, u'}', u"parameter name");
        if (c.isLetter() || c == u'_')
            return readWord();
        return readSymbol();
    }

    void skipBlanks()
    {
        while (m_at < m_text.size() && m_text[m_at].isSpace())
            ++m_at;
    }

    bool refuse(qsizetype offset, const QString &words)
    {
        m_fault = {words, offset};
        return false;
    }

    bool add(TokenKind kind, qsizetype begin, QString text)
    {
        m_tokens.push_back({kind, begin, std::move(text)});
        return true;
    }

    void skipDigits()
    {
        while (m_at < m_text.size() && isDigit(m_text[m_at]))
            ++m_at;
    }

    bool readNumber()
    {
        const qsizetype begin = m_at;
        skipDigits();
        if (m_at < m_text.size() && m_text[m_at] == u'.') {
            ++m_at;
            skipDigits();
        }
        if (m_at < m_text.size() && (isWordCharacter(m_text[m_at]) || m_text[m_at] == u'.'))
            return refuse(m_at, QStringLiteral("\"%1\" cannot follow a number").arg(m_text[m_at]));
        return add(TokenKind::Number, begin, m_text.sliced(begin, m_at - begin).toString());
    }

    /// Up to the closing character; written twice it stands for itself.
    bool readEnclosed(TokenKind kind, QChar close, QStringView what)
    {
        const qsizetype begin = m_at++;
        QString content;
        for (;;) {
            const qsizetype end = m_text.indexOf(close, m_at);
            if (end < 0)
                return refuse(begin,
                    QStringLiteral("the %1 that starts here has no closing %2").arg(what, close));
            content += m_text.sliced(m_at, end - m_at);
            m_at = end + 1;
            if (m_at == m_text.size() || m_text[m_at] != close)
                break;
            content += close;
            ++m_at;
        }
        if (kind != TokenKind::Text && content.trimmed().isEmpty())
            return refuse(begin, QStringLiteral("the %1 is empty").arg(what));
        return add(kind, begin, content);
    }

    bool readWord()
    {
        const qsizetype begin = m_at;
        while (m_at < m_text.size() && isWordCharacter(m_text[m_at]))
            ++m_at;
        return add(TokenKind::Word, begin, m_text.sliced(begin, m_at - begin).toString());
    }

    bool readSymbol()
    {
        for (const Symbol &symbol : kSymbols) {
            if (!m_text.sliced(m_at).startsWith(symbol.text))
                continue;
            if (!symbol.instead.isEmpty())
                return refuse(m_at,
                    QStringLiteral("\"%1\" is no operator; write %2")
                        .arg(symbol.text, symbol.instead));
            m_at += symbol.text.size();
            return add(TokenKind::Symbol, m_at - symbol.text.size(), symbol.text.toString());
        }
        return refuse(m_at, QStringLiteral("\"%1\" means nothing here").arg(m_text[m_at]));
    }

    QStringView m_text;
    qsizetype m_at = 0;
    std::vector<Token> m_tokens;
    ExpressionFault m_fault;
};

} // namespace

QString Token::shown() const
{
    constexpr qsizetype kShownLetters = 40;
    if (kind == TokenKind::End)
        return QStringLiteral("the end");
    return text.size() > kShownLetters ? QString(u'"' + text.first(kShownLetters) + u"…\"")
                                       : QString(u'"' + text + u'"');
}

std::variant<std::vector<Token>, ExpressionFault> readTokens(QStringView text)
{
    return TokenReader(text).read();
}

} // namespace corvane

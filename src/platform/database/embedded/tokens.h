#pragma once

#include <QtCore/QString>

#include <vector>

namespace corvane::embedded {

/// One piece of a statement's text; blanks and comments are not kept.
struct Token
{
    enum class Kind : quint8 {
        Word, ///< a keyword or a bare name
        Name, ///< [bracketed] or "quoted" name
        Text, ///< 'quoted text', without the N before it
        Number,
        Binary, ///< 0x...
        Variable, ///< @name
        TempName, ///< #name
        Symbol,
        End,
    };

    Kind kind = Kind::End;
    QStringView text; ///< as written
    qsizetype at = 0; ///< offset in the statement, from 0

    bool isWord(QLatin1StringView word) const
    {
        return kind == Kind::Word && text.compare(word, Qt::CaseInsensitive) == 0;
    }
    bool isSymbol(QLatin1StringView symbol) const { return kind == Kind::Symbol && text == symbol; }
};

/// The pieces of a statement, ended by an End token. The views look into `sql`.
/// DatabaseError for an unclosed quotation, bracket or comment and for a NUL character.
std::vector<Token> tokenize(QStringView sql);

/// The content of a quoted text or name, or the word itself.
QString unquoted(const Token &token);

/// A text literal and a name as SQLite reads them.
QString quotedText(QStringView content);
QString quotedName(QStringView name);

/// Walks over a statement's tokens; every refusal names what stands at the current token and where.
class TokenReader
{
public:
    explicit TokenReader(QStringView sql);

    const Token &peek(qsizetype ahead = 0) const;
    Token take();
    qsizetype position() const { return m_position; }
    void seek(qsizetype position) { m_position = position; }

    bool atWord(const char *word) const { return peek().isWord(QLatin1StringView(word)); }
    bool atSymbol(const char *symbol) const { return peek().isSymbol(QLatin1StringView(symbol)); }
    bool takeWord(const char *word);
    bool takeSymbol(const char *symbol);
    void expectWord(const char *word);
    void expectSymbol(const char *symbol);

    /// The statement uses something that the embedded database has no equal for.
    [[noreturn]] void refuse(const QString &construct, qsizetype at) const;
    [[noreturn]] void refuse(const QString &construct) const { refuse(construct, peek().at); }
    /// The statement is wrong at the current token.
    [[noreturn]] void refuseToken() const;

private:
    std::vector<Token> m_tokens;
    qsizetype m_position = 0;
};

} // namespace corvane::embedded

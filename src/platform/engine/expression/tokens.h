#pragma once

#include "platform/engine/expression/expression.h"

#include <QtCore/QString>

#include <variant>
#include <vector>

namespace corvane {

enum class TokenKind : quint8 { Number, Text, Column, Parameter, Word, Symbol, End };

/// One piece of an expression.
struct Token
{
    TokenKind kind = TokenKind::End;
    qsizetype offset = 0;
    QString text; ///< without its quotes or brackets

    /// For messages: the text in quotes, shortened, or "the end".
    QString shown() const;

    bool isSymbol(QStringView symbol) const { return kind == TokenKind::Symbol && text == symbol; }
    bool isWord(QStringView word) const
    {
        return kind == TokenKind::Word && text.compare(word, Qt::CaseInsensitive) == 0;
    }
};

/// Splits an expression into its tokens, ended by one of kind End.
std::variant<std::vector<Token>, ExpressionFault> readTokens(QStringView text);

} // namespace corvane

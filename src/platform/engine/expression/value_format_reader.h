#pragma once

#include "platform/engine/expression/value_format.h"

namespace corvane {

/// Reads the text of one value format; the first fault ends it.
class ValueFormatReader
{
public:
    explicit ValueFormatReader(QStringView text)
        : m_text(text)
    {
    }

    std::variant<ValueFormat, ExpressionFault> read();

private:
    /// A quoted text, or one character as it stands.
    struct Piece
    {
        QString text;
        bool isQuoted = false;
        qsizetype offset = 0;

        bool is(QChar c) const { return !isQuoted && text[0] == c; }
        bool isAnyOf(QStringView characters) const
        {
            return !isQuoted && characters.contains(text[0]);
        }
        bool isLetter() const { return !isQuoted && text[0].isLetter(); }
    };
    using NumberSection = ValueFormat::NumberSection;

    bool refuse(qsizetype offset, const QString &words);
    bool readNamed();
    bool readPieces();
    bool readQuoted(qsizetype &at);
    bool looksLikeMoment() const;
    bool readMoment();
    bool readMomentLetters(size_t &at);
    bool readChoice();
    bool readNumbers();
    bool readSection(size_t begin, size_t end);
    bool readDigits(size_t &at, size_t end, NumberSection &section);
    bool refuseLetters();

    QStringView m_text;
    std::vector<Piece> m_pieces;
    ValueFormat m_format;
    ExpressionFault m_fault;
};

} // namespace corvane

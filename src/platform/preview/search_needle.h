#pragma once

#include "platform/preview/search_folding.h"

namespace corvane {

/// What is searched for, folded, and where it stands in text.
class SearchNeedle
{
public:
    SearchNeedle() = default;
    /// @param folded by the rule; a lone blank is nothing to search for
    SearchNeedle(std::u16string folded, CaseRule rule);

    bool isEmpty() const { return m_letters.empty(); }
    qsizetype size() const { return qsizetype(m_letters.size()); }

    /// The first match from an offset on, in text that keeps its length and was asked about; -1:
    /// none.
    qsizetype findIn(QStringView text, qsizetype from, const SearchFolding &folding) const;
    /// The same in folded text.
    qsizetype findInFolded(QStringView text, qsizetype from) const;

private:
    static constexpr qint16 kHighestRankOfOthers = -0x8000 + 0x7e;

    /// A letter of the needle, 0 where it is not ASCII. Letters of a text may fold to it if they
    /// are not ASCII, or are the ASCII letter with `bit` set.
    struct Anchor
    {
        qsizetype at = 0;
        char16_t letter = 0;
        char16_t bit = 0;

        /// Orders letters so that one comparison of signed numbers tells: the ASCII letters that do
        /// not fold to this one are the lowest. (Of 16 bits, because the compiler then compares
        /// eight at once.)
        qint16 rank(char16_t c) const { return qint16(quint16(((c | bit) ^ letter) + 0x7fff)); }
    };
    Anchor anchorAt(qsizetype at) const;
    qsizetype skipBlocks(const char16_t *text, qsizetype at, qsizetype end) const;
    bool standsAt(const char16_t *text, const SearchFolding &folding) const;

    std::u16string m_letters;
    CaseRule m_rule = CaseRule::Ignore;
    Anchor m_first; ///< the first and last letters that are no blanks
    Anchor m_last;
};

} // namespace corvane

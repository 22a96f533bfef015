#include "platform/preview/search_needle.h"

#include <algorithm>

namespace corvane {

namespace {

constexpr qsizetype kBlock = 32;

} // namespace

SearchNeedle::SearchNeedle(std::u16string folded, CaseRule rule)
    : m_letters(std::move(folded))
    , m_rule(rule)
{
    const size_t first = m_letters.find_first_not_of(u' ');
    if (first == std::u16string::npos) {
        m_letters.clear();
        return;
    }
    m_first = anchorAt(qsizetype(first));
    m_last = anchorAt(qsizetype(m_letters.find_last_not_of(u' ')));
}

SearchNeedle::Anchor SearchNeedle::anchorAt(qsizetype at) const
{
    const char16_t letter = m_letters[size_t(at)] <= 0x7f ? m_letters[size_t(at)] : u'\0';
    const bool hasCapital = m_rule == CaseRule::Ignore && letter >= u'a' && letter <= u'z';
    return {at, letter, char16_t(hasCapital ? 0x20 : 0)};
}

/// Passes over blocks in which no match begins: to one in which it may, or to the last, shorter
/// one.
qsizetype SearchNeedle::skipBlocks(const char16_t *text, qsizetype at, qsizetype end) const
{
    const Anchor first = m_first;
    const Anchor last = m_last;
    for (; at + kBlock <= end; at += kBlock) {
        const char16_t *firsts = text + at + first.at;
        const char16_t *lasts = text + at + last.at;
        qint16 any = 0;
        for (qsizetype i = 0; i < kBlock; ++i) {
            const qint16 rank = std::min(first.rank(firsts[i]), last.rank(lasts[i]));
            any |= qint16(rank > kHighestRankOfOthers ? -1 : 0);
        }
        if (any != 0)
            break;
    }
    return at;
}

bool SearchNeedle::standsAt(const char16_t *text, const SearchFolding &folding) const
{
    if (std::min(m_first.rank(text[m_first.at]), m_last.rank(text[m_last.at]))
        <= kHighestRankOfOthers)
        return false;
    for (size_t i = 0; i < m_letters.size(); ++i) {
        if (folding.letter(text[i], m_rule) != m_letters[i])
            return false;
    }
    return true;
}

qsizetype SearchNeedle::findIn(QStringView text, qsizetype from, const SearchFolding &folding) const
{
    const auto *letters = reinterpret_cast<const char16_t *>(text.utf16());
    const qsizetype end = text.size() - size() + 1; // of the offsets where a match may begin
    for (qsizetype at = from; at < end;) {
        at = skipBlocks(letters, at, end);
        for (const qsizetype blockEnd = std::min(at + kBlock, end); at < blockEnd; ++at) {
            if (standsAt(letters + at, folding))
                return at;
        }
    }
    return -1;
}

qsizetype SearchNeedle::findInFolded(QStringView text, qsizetype from) const
{
    return text.indexOf(QStringView(m_letters), from);
}

} // namespace corvane

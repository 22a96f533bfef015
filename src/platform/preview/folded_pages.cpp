#include "platform/preview/folded_pages.h"

#include <algorithm>

namespace corvane {

SearchPattern::SearchPattern(const std::u16string &folded)
{
    if (folded.find_first_not_of(u' ') == std::u16string::npos)
        return;
    m_size = qsizetype(folded.size());
    m_fitsBytes = std::ranges::all_of(folded, [](char16_t letter) { return letter <= 0xff; });
    if (m_fitsBytes)
        m_bytes.setPattern(QStringView(folded).toLatin1());
    m_wide.setPattern(QString::fromStdU16String(folded));
}

FoldedPages::FoldedPages(std::span<const Page> pages, SearchFolding &folding, CaseRule rule)
{
    size_t letters = 0;
    for (const Page &page : pages)
        letters += size_t(page.text.size()) + 1;
    m_bytes.reserve(letters);
    m_places.reserve(pages.size() + 1);
    m_places.emplace_back();
    for (const Page &page : pages) {
        if (folding.append(page.text, rule, m_bytes, m_steps)) {
            m_bytes.push_back(char(SearchFolding::kSeparator));
        } else {
            folding.append(page.text, rule, m_wide, m_steps);
            m_wide.push_back(SearchFolding::kSeparator);
        }
        m_places.push_back(
            {quint32(m_bytes.size()), quint32(m_wide.size()), quint32(m_steps.size())});
    }
    m_bytes.shrink_to_fit();
    m_wide.shrink_to_fit();
    m_steps.shrink_to_fit();
}

/// Of a ligature's letters the first may match alone: the whole ligature is marked, once.
FoldedPages::Match FoldedPages::steppedMatchAt(size_t page, quint32 begin, quint32 size) const
{
    const auto steps = std::span(m_steps).subspan(
        m_places[page].steps, m_places[page + 1].steps - m_places[page].steps);
    Match match{{originOf(steps, begin), 0}, begin + size};
    match.stretch.end = std::max(originOf(steps, match.next), originOf(steps, match.next - 1) + 1);
    while (originOf(steps, match.next) < match.stretch.end)
        ++match.next;
    return match;
}

} // namespace corvane

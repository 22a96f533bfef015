#include "platform/preview/document_search.h"

#include <algorithm>
#include <limits>
#include <numeric>

namespace corvane {

/// Steps through the matches on one page.
class DocumentSearch::Scan
{
public:
    Scan(const DocumentSearch &search, int page)
        : m_search(search)
        , m_page(search.m_document->pages[size_t(page)])
        , m_folding(search.m_folding)
        , m_keepsLength(search.m_kinds[size_t(page)] == PageKind::KeepsLength)
    {
        if (!m_keepsLength)
            m_folded = m_folding.fold(m_page.text, search.m_rule);
    }

    bool next(TextStretch &hit)
    {
        while (const std::optional<TextStretch> match = nextMatch()) {
            if (isWithinOneCell(m_page, *match)) {
                hit = *match;
                return true;
            }
            m_position = m_matchedAt + 1;
        }
        return false;
    }

private:
    std::optional<TextStretch> nextMatch()
    {
        const SearchNeedle &needle = m_search.m_needle;
        m_matchedAt = m_keepsLength ? needle.findIn(m_page.text, m_position, m_folding)
                                    : needle.findInFolded(m_folded.text, m_position);
        if (m_matchedAt < 0)
            return std::nullopt;
        m_position = m_matchedAt + needle.size();
        if (m_keepsLength)
            return TextStretch{quint32(m_matchedAt), quint32(m_position)};
        // Of a ligature's letters the first may match alone: the whole ligature is marked, once.
        const std::vector<quint32> &origins = m_folded.origins;
        const quint32 end
            = std::max(origins[size_t(m_position)], origins[size_t(m_position) - 1] + 1);
        while (origins[size_t(m_position)] < end)
            ++m_position;
        return TextStretch{origins[size_t(m_matchedAt)], end};
    }

    const DocumentSearch &m_search;
    const Page &m_page;
    const SearchFolding &m_folding;
    bool m_keepsLength;
    SearchFolding::Folded m_folded;
    qsizetype m_position = 0;
    qsizetype m_matchedAt = 0;
};

void DocumentSearch::setDocument(DocumentPtr document)
{
    m_document = std::move(document);
    const size_t pages = m_document ? m_document->pages.size() : 0;
    m_kinds.assign(pages, PageKind::Unknown);
    start({}, m_rule, 0);
}

void DocumentSearch::start(const QString &text, CaseRule rule, int fromPage)
{
    m_rule = rule;
    m_needle = SearchNeedle(m_folding.fold(text, rule).text, rule);
    m_counts.assign(m_document ? m_document->pages.size() : 0, 0);
    m_startPage = std::max(0, fromPage);
    m_firstPage = -1;
    m_hitCount = 0;
    m_done = m_needle.isEmpty() ? int(m_counts.size()) : 0;
}

void DocumentSearch::work(qsizetype letters)
{
    const auto pages = int(m_counts.size());
    for (; letters > 0 && m_done < pages; ++m_done) {
        const int page = (m_startPage + m_done) % pages;
        letters -= m_document->pages[size_t(page)].text.size() + 1;
        const qsizetype count = countOn(page);
        m_counts[size_t(page)] = quint32(count);
        m_hitCount += count;
        if (count > 0 && m_firstPage < 0)
            m_firstPage = page;
    }
}

void DocumentSearch::finish()
{
    work(std::numeric_limits<qsizetype>::max());
}

qsizetype DocumentSearch::countOn(int page)
{
    PageKind &kind = m_kinds[size_t(page)];
    if (kind == PageKind::Unknown) {
        const bool keeps = m_folding.keepsLength(m_document->pages[size_t(page)].text);
        kind = keeps ? PageKind::KeepsLength : PageKind::Other;
    }
    qsizetype count = 0;
    Scan scan(*this, page);
    for (TextStretch hit; scan.next(hit);)
        ++count;
    return count;
}

std::vector<TextStretch> DocumentSearch::hitsOn(int page) const
{
    std::vector<TextStretch> hits;
    if (!isActive() || m_counts[size_t(page)] == 0)
        return hits;
    hits.reserve(m_counts[size_t(page)]);
    Scan scan(*this, page);
    for (TextStretch hit; scan.next(hit);)
        hits.push_back(hit);
    return hits;
}

std::optional<SearchHit> DocumentSearch::first() const
{
    if (m_firstPage < 0)
        return std::nullopt;
    return hitAt(m_firstPage, hitsOn(m_firstPage), 0);
}

std::optional<SearchHit> DocumentSearch::after(const SearchHit &hit)
{
    return neighbour(hit, 1);
}

std::optional<SearchHit> DocumentSearch::before(const SearchHit &hit)
{
    return neighbour(hit, -1);
}

SearchHit DocumentSearch::hitAt(int page, const std::vector<TextStretch> &hits, size_t index) const
{
    return {page, hits[index], countBefore(page) + qint64(index) + 1};
}

qint64 DocumentSearch::numberOf(const SearchHit &hit) const
{
    const std::vector<TextStretch> hits = hitsOn(hit.page);
    return countBefore(hit.page) + (std::ranges::find(hits, hit.text) - hits.begin()) + 1;
}

qint64 DocumentSearch::countBefore(int page) const
{
    return std::accumulate(m_counts.begin(), m_counts.begin() + page, qint64(0));
}

std::optional<SearchHit> DocumentSearch::neighbour(const SearchHit &hit, int step)
{
    finish();
    if (m_hitCount == 0)
        return std::nullopt;
    const std::vector<TextStretch> here = hitsOn(hit.page);
    const auto same = std::ranges::find(here, hit.text);
    const auto index = (same - here.begin()) + step;
    if (same != here.end() && index >= 0 && index < std::ssize(here))
        return hitAt(hit.page, here, size_t(index));
    const auto pages = int(m_counts.size());
    int page = hit.page;
    do
        page = (page + step + pages) % pages;
    while (m_counts[size_t(page)] == 0);
    const std::vector<TextStretch> there = hitsOn(page);
    return hitAt(page, there, step > 0 ? 0 : there.size() - 1);
}

} // namespace corvane

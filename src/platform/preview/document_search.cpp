#include "platform/preview/document_search.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <span>

namespace corvane {

namespace {

/// Enough that each costs next to nothing, and few enough that they are still in the processor's
/// cache when they are searched.
constexpr int kPagesPerBlock = 128;

} // namespace

void DocumentSearch::setDocument(DocumentPtr document)
{
    m_document = std::move(document);
    m_counts.clear();
    forgetText();
    start({}, m_rule, 0);
}

void DocumentSearch::start(const QString &text, CaseRule rule, int fromPage)
{
    setRule(rule);
    m_pattern = SearchPattern(m_folding.fold(text, rule).text);
    m_counts.assign(m_document ? m_document->pages.size() : 0, 0);
    m_startPage = std::max(0, fromPage);
    m_firstPage = -1;
    m_hitCount = 0;
    m_done = m_pattern.isEmpty() ? int(m_counts.size()) : 0;
}

bool DocumentSearch::prepare(CaseRule rule, qsizetype letters)
{
    setRule(rule);
    for (size_t i = 0; i < m_blocks.size(); ++i) {
        if (letters <= 0)
            return false;
        if (!m_blocks[i])
            letters -= block(int(i) * kPagesPerBlock).size();
    }
    return true;
}

void DocumentSearch::setRule(CaseRule rule)
{
    if (rule != m_rule)
        forgetText();
    m_rule = rule;
}

void DocumentSearch::forgetText()
{
    const size_t pages = m_document ? m_document->pages.size() : 0;
    m_blocks.clear();
    m_blocks.resize((pages + kPagesPerBlock - 1) / kPagesPerBlock);
}

const FoldedPages &DocumentSearch::block(int page)
{
    std::optional<FoldedPages> &block = m_blocks[size_t(page / kPagesPerBlock)];
    if (!block) {
        const auto first = size_t(page - page % kPagesPerBlock);
        const std::span all(m_document->pages);
        block.emplace(all.subspan(first, std::min<size_t>(kPagesPerBlock, all.size() - first)),
            m_folding, m_rule);
    }
    return *block;
}

void DocumentSearch::work(qsizetype letters)
{
    const auto pages = int(m_counts.size());
    while (letters > 0 && m_done < pages) {
        const int from = (m_startPage + m_done) % pages;
        const int last = std::min(
            {pages, from + pages - m_done, from - from % kPagesPerBlock + kPagesPerBlock});
        int to = from;
        for (; letters > 0 && to < last; ++to)
            letters -= m_document->pages[size_t(to)].text.size() + 1;
        count(from, to);
        m_done += to - from;
    }
}

void DocumentSearch::finish()
{
    work(std::numeric_limits<qsizetype>::max());
}

void DocumentSearch::count(int from, int to)
{
    const int first = from - from % kPagesPerBlock;
    block(from).find(m_pattern, from - first, to - first, [&](int page, TextStretch match) {
        const size_t index = size_t(first) + size_t(page);
        if (!isWithinOneCell(m_document->pages[index], match))
            return false;
        ++m_counts[index];
        ++m_hitCount;
        return true;
    });
    for (int page = from; m_firstPage < 0 && page < to; ++page) {
        if (m_counts[size_t(page)] > 0)
            m_firstPage = page;
    }
}

std::vector<TextStretch> DocumentSearch::hitsOn(int page) const
{
    std::vector<TextStretch> hits;
    if (!isActive() || m_counts[size_t(page)] == 0)
        return hits;
    hits.reserve(m_counts[size_t(page)]);
    const int inBlock = page % kPagesPerBlock;
    m_blocks[size_t(page / kPagesPerBlock)]->find(
        m_pattern, inBlock, inBlock + 1, [&](int, TextStretch match) {
            if (!isWithinOneCell(m_document->pages[size_t(page)], match))
                return false;
            hits.push_back(match);
            return true;
        });
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

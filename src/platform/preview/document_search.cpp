#include "platform/preview/document_search.h"

#include <algorithm>
#include <limits>
#include <numeric>

namespace corvane {

namespace {

/// Pages lie all over the memory: waiting for one after the other takes longer than searching them.
void fetchAhead(const QString &text)
{
#if defined(__GNUC__)
    constexpr qsizetype kLine = 64;
    const auto *bytes = reinterpret_cast<const char *>(text.constData());
    for (qsizetype at = 0; at < text.size() * qsizetype(sizeof(QChar)); at += kLine)
        __builtin_prefetch(bytes + at);
#else
    Q_UNUSED(text);
#endif
}

} // namespace

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
        const auto length = quint32(m_search.m_pattern.size());
        if (m_keepsLength) {
            const CaseRule rule = m_search.m_rule;
            const auto *text = reinterpret_cast<const char16_t *>(m_page.text.utf16());
            if (!find(quint32(m_page.text.size()),
                    [&](quint32 at) { return m_folding.letter(text[at], rule); }))
                return std::nullopt;
            return TextStretch{m_matchedAt, m_matchedAt + length};
        }
        const std::vector<quint32> &origins = m_folded.origins;
        if (!find(quint32(m_folded.text.size()), [&](quint32 at) { return m_folded.text[at]; }))
            return std::nullopt;
        // Of a ligature's letters the first may match alone: the whole ligature is marked.
        const quint32 end
            = std::max(origins[m_matchedAt + length], origins[m_matchedAt + length - 1] + 1);
        return TextStretch{origins[m_matchedAt], end};
    }

    template <typename LetterAt> bool find(quint32 size, LetterAt letterAt)
    {
        const std::u16string &pattern = m_search.m_pattern;
        const auto last = quint32(pattern.size() - 1);
        for (quint32 at = m_position; at + last < size;) {
            const char16_t c = letterAt(at + last);
            if (c == pattern[last]) {
                quint32 i = 0;
                while (i < last && letterAt(at + i) == pattern[i])
                    ++i;
                if (i == last) {
                    m_matchedAt = at;
                    m_position = at + last + 1;
                    return true;
                }
            }
            at += m_search.m_skips[c & 0xff];
        }
        return false;
    }

    const DocumentSearch &m_search;
    const Page &m_page;
    const SearchFolding &m_folding;
    bool m_keepsLength;
    SearchFolding::Folded m_folded;
    quint32 m_position = 0;
    quint32 m_matchedAt = 0;
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
    m_pattern = m_folding.fold(text, rule).text;
    if (m_pattern == u" ")
        m_pattern.clear();
    m_counts.assign(m_document ? m_document->pages.size() : 0, 0);
    m_startPage = std::max(0, fromPage);
    m_firstPage = -1;
    m_hitCount = 0;
    m_done = m_pattern.empty() ? int(m_counts.size()) : 0;
    m_skips.fill(quint32(m_pattern.size()));
    for (size_t i = 0; i + 1 < m_pattern.size(); ++i)
        m_skips[m_pattern[i] & 0xff] = quint32(m_pattern.size() - 1 - i);
}

void DocumentSearch::work(qsizetype letters)
{
    const auto pages = int(m_counts.size());
    for (; letters > 0 && m_done < pages; ++m_done) {
        const int page = (m_startPage + m_done) % pages;
        letters -= m_document->pages[size_t(page)].text.size() + 1;
        fetchAhead(m_document->pages[size_t((page + 1) % pages)].text);
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

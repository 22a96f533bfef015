#pragma once

#include "platform/composer/document.h"
#include "platform/preview/page_text.h"
#include "platform/preview/search_folding.h"

#include <QtCore/QByteArrayMatcher>
#include <QtCore/QStringMatcher>

#include <span>

namespace corvane {

/// What is searched for, folded, made ready for the library's search.
class SearchPattern
{
public:
    SearchPattern() = default;
    /// @param folded a lone blank is nothing to search for
    explicit SearchPattern(const std::u16string &folded);

    bool isEmpty() const { return m_size == 0; }
    qsizetype size() const { return m_size; }
    /// Whether pages in bytes can hold it.
    bool fitsBytes() const { return m_fitsBytes; }

    qsizetype indexIn(QByteArrayView text, qsizetype from) const
    {
        return m_bytes.indexIn(text, from);
    }
    qsizetype indexIn(QStringView text, qsizetype from) const { return m_wide.indexIn(text, from); }

private:
    qsizetype m_size = 0;
    bool m_fitsBytes = false;
    QByteArrayMatcher m_bytes;
    QStringMatcher m_wide;
};

/// The folded text of some pages, one behind the other: as bytes where all letters of a page fit,
/// else as UTF-16 units.
class FoldedPages
{
public:
    FoldedPages(std::span<const Page> pages, SearchFolding &folding, CaseRule rule);

    /// In letters.
    qsizetype size() const { return qsizetype(m_bytes.size()) + qsizetype(m_wide.size()); }

    /// Calls found(page, stretch) for the matches on pages from one to another, the end not
    /// included; found says whether it is a hit, which the next one must not overlap.
    template <typename Found>
    void find(const SearchPattern &pattern, int from, int to, Found found) const
    {
        if (pattern.fitsBytes())
            findIn(pattern, QByteArrayView(m_bytes), &Place::bytes, from, to, found);
        if (!m_wide.empty())
            findIn(pattern, QStringView(m_wide), &Place::wide, from, to, found);
    }

private:
    /// Of a page, and of the end.
    struct Place
    {
        quint32 bytes = 0; ///< where its letters begin, a separator behind them
        quint32 wide = 0;
        quint32 steps = 0;
    };

    template <typename View, typename Found>
    void findIn(const SearchPattern &pattern, View all, quint32 Place::*begin, int from, int to,
        Found &found) const
    {
        const View text = all.first(m_places[size_t(to)].*begin);
        auto page = size_t(from);
        for (qsizetype at = m_places[page].*begin; (at = pattern.indexIn(text, at)) >= 0;) {
            while (m_places[page + 1].*begin <= at)
                ++page;
            const quint32 pageBegin = m_places[page].*begin;
            const Match match = matchAt(page, quint32(at) - pageBegin, quint32(pattern.size()));
            at = found(int(page), match.stretch) ? pageBegin + match.next : at + 1;
        }
    }

    struct Match
    {
        TextStretch stretch;
        quint32 next = 0; ///< the first folded letter behind the stretch
    };
    Match matchAt(size_t page, quint32 begin, quint32 size) const
    {
        if (m_places[page].steps == m_places[page + 1].steps)
            return {{begin, begin + size}, begin + size};
        return steppedMatchAt(page, begin, size);
    }
    Match steppedMatchAt(size_t page, quint32 begin, quint32 size) const;

    std::string m_bytes;
    std::u16string m_wide;
    std::vector<OriginStep> m_steps;
    std::vector<Place> m_places;
};

} // namespace corvane

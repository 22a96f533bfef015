#pragma once

#include "platform/preview/folded_pages.h"

#include <optional>

namespace corvane {

/// Letters on a page that match; `number` counts the hits of the document from 1.
struct SearchHit
{
    int page = 0;
    TextStretch text;
    qint64 number = 0;

    bool operator==(const SearchHit &) const = default;
};

/// Searches all pages of a document for a text, a portion at a time, beginning where the reader is.
/// The pages' folded text is kept, a byte a letter as a rule, for further searches by the same case
/// rule. Of the hits only counts are; those of a page are found again when they are needed. A hit
/// lies within one cell or paragraph, line breaks do not matter.
class DocumentSearch
{
public:
    void setDocument(DocumentPtr document);
    /// @param fromPage where the reader is
    void start(const QString &text, CaseRule rule, int fromPage);

    /// Folds about so many letters ahead of a search; whether all are folded.
    bool prepare(CaseRule rule, qsizetype letters);

    /// Whether there is anything to search for.
    bool isActive() const { return !m_pattern.isEmpty() && !m_counts.empty(); }
    bool isFinished() const { return m_done == int(m_counts.size()); }
    /// Searches on, through about so many letters.
    void work(qsizetype letters);
    void finish();

    /// So far.
    qint64 hitCount() const { return m_hitCount; }
    std::vector<TextStretch> hitsOn(int page) const;

    /// The first hit from the reader's page on, round the end; may come before the search is
    /// finished.
    std::optional<SearchHit> first() const;
    /// The hit after another one, round the end; finishes the search.
    std::optional<SearchHit> after(const SearchHit &hit);
    std::optional<SearchHit> before(const SearchHit &hit);
    /// Which of the hits found so far it is, from 1.
    qint64 numberOf(const SearchHit &hit) const;

private:
    void setRule(CaseRule rule);
    void forgetText();
    const FoldedPages &block(int page);
    void count(int from, int to);
    SearchHit hitAt(int page, const std::vector<TextStretch> &hits, size_t index) const;
    qint64 countBefore(int page) const;
    std::optional<SearchHit> neighbour(const SearchHit &hit, int step);

    DocumentPtr m_document;
    CaseRule m_rule = CaseRule::Ignore;
    SearchFolding m_folding;
    std::vector<std::optional<FoldedPages>> m_blocks; ///< by the case rule; empty: not yet folded
    SearchPattern m_pattern;
    std::vector<quint32> m_counts; ///< hits by page
    int m_startPage = 0;
    int m_done = 0; ///< pages, counted from m_startPage round the end
    int m_firstPage = -1;
    qint64 m_hitCount = 0;
};

} // namespace corvane

#pragma once

#include "platform/preview/page_text.h"

#include <compare>

namespace corvane {

/// A gap between two letters of a document: pages from 0, UTF-16 units into Page::text.
struct TextPlace
{
    int page = 0;
    quint32 offset = 0;

    auto operator<=>(const TextPlace &) const = default;
};

enum class SelectBy { Letter, Word, Line };

/// The text that the reader has marked, from where the mouse went down to where it is now.
/// Selecting by words or lines, what was taken first stays in whole, in whichever direction the
/// mouse moves.
class TextSelection
{
public:
    bool isEmpty() const { return begin() == end(); }
    SelectBy by() const { return m_by; }
    /// Whether there is a place to extend from, though nothing may be marked.
    bool isStarted() const { return m_isStarted; }
    TextPlace begin() const { return std::min(m_first.begin, m_last.begin); }
    TextPlace end() const { return std::max(m_first.end, m_last.end); }
    /// What of a page's text is marked.
    TextStretch on(const Document &document, int page) const;

    /// Selecting by words or lines, a place is the letter behind it.
    void start(const Document &document, TextPlace place, SelectBy by);
    void extendTo(const Document &document, TextPlace place);
    void selectAll(const Document &document);
    void clear() { *this = {}; }

private:
    struct Range
    {
        TextPlace begin;
        TextPlace end;
    };
    Range unitAt(const Document &document, TextPlace place) const;

    bool m_isStarted = false;
    SelectBy m_by = SelectBy::Letter;
    Range m_first;
    Range m_last;
};

/// The letters between two places as a sheet takes them: a line per paragraph or table row, cells
/// separated by tabs. Of several rows each keeps its columns; a heading row that a page break only
/// repeats comes once.
QString textForCopying(const Document &document, TextPlace begin, TextPlace end);

} // namespace corvane

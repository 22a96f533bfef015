#pragma once

#include "platform/preview/page_text.h"

#include <compare>

namespace corvane {

/// A gap between two letters of a document: pages from 0, UTF-16 units into Page::text.
struct LetterPlace
{
    int page = 0;
    quint32 offset = 0;

    auto operator<=>(const LetterPlace &) const = default;
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
    LetterPlace begin() const { return std::min(m_first.begin, m_last.begin); }
    LetterPlace end() const { return std::max(m_first.end, m_last.end); }
    /// Selecting by words or lines, a place is the letter behind it.
    void start(const Document &document, LetterPlace place, SelectBy by);
    void extendTo(const Document &document, LetterPlace place);
    void selectAll(const Document &document);
    void clear() { *this = {}; }

private:
    struct Range
    {
        LetterPlace begin;
        LetterPlace end;
    };
    Range unitAt(const Document &document, LetterPlace place) const;

    bool m_isStarted = false;
    SelectBy m_by = SelectBy::Letter;
    Range m_first;
    Range m_last;
};

/// What of a page's text a copy of the letters between two places takes: all of it but the page's
/// own header and footer, unless nothing else is marked.
std::vector<TextStretch> copiedLetters(
    const Document &document, LetterPlace begin, LetterPlace end, int page);

/// The letters between two places as a sheet takes them: a line per paragraph or table row, cells
/// separated by tabs. Of several rows each keeps its columns; a heading row that a page break only
/// repeats comes once. Headers and footers of pages are left out as in copiedLetters().
QString textForCopying(const Document &document, LetterPlace begin, LetterPlace end);

} // namespace corvane

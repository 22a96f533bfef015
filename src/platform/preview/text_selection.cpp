#include "platform/preview/text_selection.h"

#include <algorithm>

namespace corvane {

namespace {

quint32 textEnd(const Document &document, int page)
{
    return quint32(document.pages[size_t(page)].text.size());
}

/// What of one page lies between two places.
TextStretch between(const Document &document, LetterPlace begin, LetterPlace end, int page)
{
    if (page < begin.page || page > end.page)
        return {};
    return {page == begin.page ? begin.offset : 0,
        page == end.page ? end.offset : textEnd(document, page)};
}

/// One paragraph or row on its way to the clipboard.
struct CopiedRow
{
    quint16 firstColumn = 0;
    QString text;
};

class Copying
{
public:
    void addPage(const Page &page, TextStretch marked);
    QString text() const;

private:
    void addBlock(const Page &page, size_t block, std::span<const Cell> cells, TextStretch marked);

    std::vector<CopiedRow> m_rows;
    std::vector<Cell> m_cells;
    QString m_heading;
};

void Copying::addPage(const Page &page, TextStretch marked)
{
    cellsOf(page, m_cells);
    const std::span<const Cell> cells(m_cells);
    size_t from = 0;
    for (size_t block = 0; block < page.blocks.size(); ++block) {
        size_t end = from;
        while (end < cells.size() && cells[end].block == block)
            ++end;
        addBlock(page, block, cells.subspan(from, end - from), marked);
        from = end;
    }
}

void Copying::addBlock(
    const Page &page, size_t block, std::span<const Cell> cells, TextStretch marked)
{
    CopiedRow row;
    bool hasCell = false;
    quint16 column = 0;
    for (const Cell &cell : cells) {
        const quint32 begin = std::max(marked.begin, cell.text.begin);
        const quint32 end = std::min(marked.end, cell.text.end);
        if (begin >= end)
            continue;
        if (!std::exchange(hasCell, true))
            row.firstColumn = column = cell.column;
        row.text += QString(cell.column - column, u'\t');
        column = cell.column;
        for (const QChar c : QStringView(page.text).sliced(begin, end - begin))
            row.text += c.isSpace() ? QChar(u' ') : c;
    }
    // An empty paragraph between two marked ones is an empty line; before the first it is nothing.
    if (!hasCell && (!cells.empty() || m_rows.empty()))
        return;
    if (page.blocks[block].kind == BlockKind::HeadingRow) {
        if (block == 0 && row.text == m_heading)
            return;
        m_heading = row.text;
    }
    m_rows.push_back(std::move(row));
}

QString Copying::text() const
{
    const auto last = std::ranges::find_if(
        m_rows.rbegin(), m_rows.rend(), [](const CopiedRow &row) { return !row.text.isEmpty(); });
    QString text;
    for (auto row = m_rows.begin(); row != last.base(); ++row) {
        if (row != m_rows.begin())
            text += u'\n';
        if (last.base() - m_rows.begin() > 1)
            text += QString(row->firstColumn, u'\t');
        text += row->text;
    }
    return text;
}

} // namespace

TextStretch TextSelection::on(const Document &document, int page) const
{
    return between(document, begin(), end(), page);
}

void TextSelection::start(const Document &document, LetterPlace place, SelectBy by)
{
    m_isStarted = true;
    m_by = by;
    m_first = m_last = unitAt(document, place);
}

void TextSelection::extendTo(const Document &document, LetterPlace place)
{
    m_last = unitAt(document, place);
}

void TextSelection::selectAll(const Document &document)
{
    const int last = document.pageCount() - 1;
    m_isStarted = last >= 0;
    m_by = SelectBy::Letter;
    m_first = m_last = last < 0 ? Range() : Range{{0, 0}, {last, textEnd(document, last)}};
}

TextSelection::Range TextSelection::unitAt(const Document &document, LetterPlace place) const
{
    if (m_by == SelectBy::Letter)
        return {place, place};
    const PageText text(document, place.page);
    const TextStretch unit
        = m_by == SelectBy::Word ? text.wordAt(place.offset) : text.lineAt(place.offset);
    return {{place.page, unit.begin}, {place.page, unit.end}};
}

QString textForCopying(const Document &document, LetterPlace begin, LetterPlace end)
{
    Copying copying;
    for (int page = begin.page; page <= std::min(end.page, document.pageCount() - 1); ++page)
        copying.addPage(document.pages[size_t(page)], between(document, begin, end, page));
    return copying.text();
}

} // namespace corvane

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

enum class CopyFrom { Body, WholePage };

bool isCopied(const Block &block, CopyFrom from)
{
    return from == CopyFrom::WholePage || block.kind != BlockKind::Furniture;
}

/// Whether letters of a page stand outside its headers and footers.
bool hasBodyText(const Page &page, TextStretch marked)
{
    for (size_t block = 0; block < page.blocks.size(); ++block) {
        if (!isCopied(page.blocks[block], CopyFrom::Body))
            continue;
        for (const TextRun &run : page.blockRuns(block)) {
            if (std::max(marked.begin, run.textStart)
                < std::min(marked.end, run.textStart + run.textLength))
                return true;
        }
    }
    return false;
}

CopyFrom whatToCopy(const Document &document, LetterPlace begin, LetterPlace end)
{
    for (int page = begin.page; page <= std::min(end.page, document.pageCount() - 1); ++page) {
        if (hasBodyText(document.pages[size_t(page)], between(document, begin, end, page)))
            return CopyFrom::Body;
    }
    return CopyFrom::WholePage;
}

/// Writes rows one behind the other into one text: a long report's copy is all the memory it takes.
class Copying
{
public:
    Copying(CopyFrom from, qsizetype size)
        : m_from(from)
    {
        m_text.reserve(size);
    }

    void addPage(const Page &page, TextStretch marked);
    QString take();

private:
    void addBlock(const Page &page, size_t block, std::span<const Cell> cells, TextStretch marked);
    void addCell(QStringView text);

    CopyFrom m_from;
    QString m_text;
    qsizetype m_end = 0; ///< of the last row that is not empty
    qsizetype m_rows = 0; ///< the empty ones behind it included
    quint16 m_indent = 0; ///< columns before the first row's text
    QString m_heading;
    bool m_isFirstOnPage = true;
    std::vector<Cell> m_cells;
};

void Copying::addPage(const Page &page, TextStretch marked)
{
    cellsOf(page, m_cells);
    m_isFirstOnPage = true;
    const std::span<const Cell> cells(m_cells);
    size_t from = 0;
    for (size_t block = 0; block < page.blocks.size(); ++block) {
        size_t end = from;
        while (end < cells.size() && cells[end].block == block)
            ++end;
        if (isCopied(page.blocks[block], m_from)) {
            addBlock(page, block, cells.subspan(from, end - from), marked);
            m_isFirstOnPage = false;
        }
        from = end;
    }
}

void Copying::addBlock(
    const Page &page, size_t block, std::span<const Cell> cells, TextStretch marked)
{
    const qsizetype rowStart = m_text.size();
    if (m_rows > 0)
        m_text += u'\n';
    qsizetype textStart = m_text.size();
    bool hasCell = false;
    quint16 column = 0;
    for (const Cell &cell : cells) {
        const quint32 begin = std::max(marked.begin, cell.text.begin);
        const quint32 end = std::min(marked.end, cell.text.end);
        if (begin >= end)
            continue;
        const bool isFirst = !std::exchange(hasCell, true);
        // Of one row alone there are no columns to keep.
        if (isFirst && m_rows == 0)
            m_indent = cell.column;
        else
            m_text.resize(m_text.size() + cell.column - column, u'\t');
        if (isFirst)
            textStart = m_text.size();
        column = cell.column;
        addCell(QStringView(page.text).sliced(begin, end - begin));
    }
    // An empty paragraph between two marked ones is an empty line; before the first it is nothing.
    if (!hasCell && (!cells.empty() || m_rows == 0))
        return m_text.truncate(rowStart);
    if (page.blocks[block].kind == BlockKind::HeadingRow) {
        const QStringView heading = QStringView(m_text).sliced(textStart);
        if (m_isFirstOnPage && heading == m_heading)
            return m_text.truncate(rowStart);
        m_heading = heading.toString();
    }
    ++m_rows;
    if (textStart == m_text.size())
        return;
    if (m_rows > 1 && m_indent > 0)
        m_text.insert(0, QString(std::exchange(m_indent, 0), u'\t'));
    m_end = m_text.size();
}

void Copying::addCell(QStringView text)
{
    const qsizetype start = m_text.size();
    m_text += text;
    for (QChar *c = m_text.data() + start; c != m_text.data() + m_text.size(); ++c) {
        if (c->isSpace())
            *c = u' ';
    }
}

QString Copying::take()
{
    m_text.truncate(m_end);
    return std::move(m_text);
}

/// An upper bound for most reports: every run a cell.
qsizetype sizeOfCopy(const Document &document, LetterPlace begin, LetterPlace end)
{
    qsizetype size = 0;
    for (int page = begin.page; page <= std::min(end.page, document.pageCount() - 1); ++page) {
        const TextStretch marked = between(document, begin, end, page);
        size += marked.end - marked.begin + document.pages[size_t(page)].runs.size();
    }
    return size;
}

} // namespace

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

std::vector<TextStretch> copiedLetters(
    const Document &document, LetterPlace begin, LetterPlace end, int page)
{
    std::vector<TextStretch> copied;
    const TextStretch marked = between(document, begin, end, page);
    if (marked.isEmpty())
        return copied;
    const CopyFrom from = whatToCopy(document, begin, end);
    const Page &sheet = document.pages[size_t(page)];
    TextStretch rest = marked;
    for (size_t block = 0; block < sheet.blocks.size(); ++block) {
        if (isCopied(sheet.blocks[block], from))
            continue;
        for (const TextRun &run : sheet.blockRuns(block)) {
            if (run.textStart > rest.begin)
                copied.push_back({rest.begin, std::min(rest.end, run.textStart)});
            rest.begin = std::max(rest.begin, run.textStart + run.textLength);
        }
    }
    copied.push_back(rest);
    std::erase_if(copied, [](TextStretch stretch) { return stretch.isEmpty(); });
    return copied;
}

QString textForCopying(const Document &document, LetterPlace begin, LetterPlace end)
{
    Copying copying(whatToCopy(document, begin, end), sizeOfCopy(document, begin, end));
    for (int page = begin.page; page <= std::min(end.page, document.pageCount() - 1); ++page)
        copying.addPage(document.pages[size_t(page)], between(document, begin, end, page));
    return copying.take();
}

} // namespace corvane

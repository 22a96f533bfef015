#include "platform/composer/document.h"

namespace corvane {

namespace {

/// The letters of a cell or paragraph as one line: runs of one column cover one stretch of text.
void appendLine(QString &out, QStringView text)
{
    for (const QChar c : text)
        out += c == u'\n' || c == u'\r' || c == u'\t' ? QChar(u' ') : c;
}

struct Stretch {
    quint32 begin = 0;
    quint32 end = 0;
};

Stretch stretchOf(std::span<const TextRun> runs)
{
    Stretch all {runs.front().textStart, runs.front().textStart};
    for (const TextRun &run : runs) {
        all.begin = std::min(all.begin, run.textStart);
        all.end = std::max(all.end, run.textStart + run.textLength);
    }
    return all;
}

void appendBlock(QString &out, const Page &page, size_t index)
{
    std::span<const TextRun> rest = page.blockRuns(index);
    for (quint16 column = 0; column < page.blocks[index].columnCount; ++column) {
        if (column > 0)
            out += u'\t';
        size_t count = 0;
        while (count < rest.size() && rest[count].column == column)
            ++count;
        if (count == 0)
            continue;
        const Stretch stretch = stretchOf(rest.first(count));
        appendLine(out, QStringView(page.text).sliced(stretch.begin, stretch.end - stretch.begin));
        rest = rest.subspan(count);
    }
    out += u'\n';
}

} // namespace

std::span<const TextRun> Page::blockRuns(size_t block) const
{
    const size_t begin = blocks[block].firstRun;
    const size_t end = block + 1 < blocks.size() ? blocks[block + 1].firstRun : runs.size();
    return std::span(runs).subspan(begin, end - begin);
}

void appendPageText(QString &out, const Page &page)
{
    for (size_t block = 0; block < page.blocks.size(); ++block) {
        if (page.blocks[block].kind != BlockKind::Furniture)
            appendBlock(out, page, block);
    }
}

QString documentText(const Document &document)
{
    QString text;
    for (size_t i = 0; i < document.pages.size(); ++i) {
        if (i > 0)
            text += u'\f';
        appendPageText(text, document.pages[i]);
    }
    return text;
}

} // namespace corvane

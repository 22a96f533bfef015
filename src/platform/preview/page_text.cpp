#include "platform/preview/page_text.h"

#include <QtCore/QTextBoundaryFinder>

#include <algorithm>
#include <cmath>
#include <limits>

namespace corvane {

namespace {

double distance(double value, double from, double to)
{
    return std::max({0.0, from - value, value - to});
}

bool isRightToLeft(QStringView text)
{
    for (const QChar c : text) {
        if (c.direction() == QChar::DirR || c.direction() == QChar::DirAL)
            return true;
        if (c.direction() == QChar::DirL)
            return false;
    }
    return false;
}

/// Offsets at which a cursor may stand, the end included.
std::vector<qsizetype> graphemeStarts(QStringView text)
{
    std::vector<qsizetype> starts{0};
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text.data(), text.size());
    while (finder.toNextBoundary() > 0)
        starts.push_back(finder.position());
    return starts;
}

void appendCells(const Page &page, size_t block, std::vector<Cell> &cells)
{
    const size_t begin = page.blocks[block].firstRun;
    const size_t end = begin + page.blockRuns(block).size();
    for (size_t i = begin; i < end; ++i) {
        const TextRun &run = page.runs[i];
        const TextStretch text{run.textStart, run.textStart + run.textLength};
        if (i == begin || cells.back().column != run.column) {
            cells.push_back({quint32(block), run.column, quint32(i), quint32(i + 1), text});
            continue;
        }
        Cell &cell = cells.back();
        cell.endRun = quint32(i + 1);
        cell.text = {std::min(cell.text.begin, text.begin), std::max(cell.text.end, text.end)};
    }
}

bool holdsInOneCell(std::span<const TextRun> runs, TextStretch stretch)
{
    TextStretch cell;
    for (size_t i = 0; i < runs.size(); ++i) {
        const TextStretch text{runs[i].textStart, runs[i].textStart + runs[i].textLength};
        const bool goesOn = i > 0 && runs[i - 1].column == runs[i].column;
        cell = goesOn ? TextStretch{std::min(cell.begin, text.begin), std::max(cell.end, text.end)}
                      : text;
        if (cell.begin <= stretch.begin && stretch.end <= cell.end)
            return true;
    }
    return false;
}

} // namespace

void cellsOf(const Page &page, std::vector<Cell> &cells)
{
    cells.clear();
    for (size_t block = 0; block < page.blocks.size(); ++block)
        appendCells(page, block, cells);
}

bool isWithinOneCell(const Page &page, TextStretch stretch)
{
    const auto startOf = [&](const Block &block) {
        return block.firstRun < page.runs.size() ? page.runs[block.firstRun].textStart
                                                 : quint32(page.text.size());
    };
    // Rows are of about the same length: guessing meets less memory than halving.
    const size_t count = page.blocks.size();
    auto block = size_t(quint64(stretch.begin) * count / size_t(page.text.size()));
    while (block > 0 && startOf(page.blocks[block]) > stretch.begin)
        --block;
    while (block + 1 < count && startOf(page.blocks[block + 1]) <= stretch.begin)
        ++block;
    // A block whose line runs both ways need not begin with its first letters: it may be the next
    // one too.
    for (int looked = 0; looked < 2 && block < page.blocks.size(); ++block) {
        const std::span<const TextRun> runs = page.blockRuns(block);
        looked += runs.empty() ? 0 : 1;
        if (holdsInOneCell(runs, stretch))
            return page.blocks[block].kind != BlockKind::Furniture;
    }
    return false;
}

PageText::PageText(const Document &document, int page)
    : m_document(document)
    , m_page(document.pages[size_t(page)])
{
    cellsOf(m_page, m_cells);
}

std::vector<QRectF> PageText::areasOf(TextStretch stretch) const
{
    std::vector<QRectF> areas;
    for (const TextRun &run : m_page.runs) {
        const quint32 begin = std::max(stretch.begin, run.textStart);
        const quint32 end = std::min(stretch.end, run.textStart + run.textLength);
        if (begin >= end)
            continue;
        const std::vector<double> edges = letterEdges(run);
        const QRectF area = lineArea(run, edges[begin - run.textStart], edges[end - run.textStart]);
        // Runs of one line touch: a change of font within a word must not cut its mark in two.
        if (!areas.empty() && areas.back().top() == area.top()
            && std::abs(areas.back().right() - area.left()) < 1)
            areas.back() |= area;
        else
            areas.push_back(area);
    }
    return areas;
}

quint32 PageText::offsetAt(QPointF point) const
{
    const TextRun *run = nearestRun(point);
    if (!run)
        return 0;
    const std::vector<double> edges = letterEdges(*run);
    const auto away
        = [&](qsizetype at) { return std::abs(run->x + edges[size_t(at)] - point.x()); };
    const std::vector<qsizetype> starts = graphemeStarts(m_page.runText(*run));
    const auto nearest = std::ranges::min_element(starts, {}, away);
    return run->textStart + quint32(*nearest);
}

quint32 PageText::letterAt(QPointF point) const
{
    const TextRun *run = nearestRun(point);
    if (!run)
        return 0;
    const std::vector<double> edges = letterEdges(*run);
    quint32 nearest = 0;
    double least = std::numeric_limits<double>::max();
    for (quint32 i = 0; i < run->textLength; ++i) {
        const auto [left, right] = std::minmax(edges[i], edges[i + 1]);
        if (const double away = distance(point.x() - run->x, left, right); away < least) {
            least = away;
            nearest = i;
        }
    }
    return run->textStart + nearest;
}

bool PageText::hasLetterAt(QPointF point) const
{
    const TextRun *run = nearestRun(point);
    return run && lineArea(*run, 0, letterEdges(*run).back()).contains(point);
}

TextStretch PageText::wordAt(quint32 offset) const
{
    const Cell *cell = cellAt(offset);
    if (!cell)
        return {offset, offset};
    const QStringView text
        = QStringView(m_page.text).sliced(cell->text.begin, cell->text.end - cell->text.begin);
    QTextBoundaryFinder words(QTextBoundaryFinder::Word, text.data(), text.size());
    words.setPosition(std::min<qsizetype>(offset - cell->text.begin, text.size() - 1));
    if (!words.isAtBoundary())
        words.toPreviousBoundary();
    const auto begin = quint32(words.position());
    words.toNextBoundary();
    const auto end = words.position() < 0 ? quint32(text.size()) : quint32(words.position());
    return {cell->text.begin + begin, cell->text.begin + end};
}

TextStretch PageText::lineAt(quint32 offset) const
{
    const Cell *cell = cellAt(offset);
    if (!cell)
        return {offset, offset};
    const bool isRow = m_page.blocks[cell->block].kind != BlockKind::Paragraph;
    const std::span<const TextRun> runs = m_page.blockRuns(cell->block);
    const auto home = std::ranges::find_if(
        runs.rbegin(), runs.rend(), [&](const TextRun &run) { return run.textStart <= offset; });
    TextStretch line{std::numeric_limits<quint32>::max(), 0};
    for (const TextRun &run : runs) {
        if (isRow || home == runs.rend() || run.y == home->y)
            line = {std::min(line.begin, run.textStart),
                std::max(line.end, run.textStart + run.textLength)};
    }
    return line;
}

QRectF PageText::lineArea(const TextRun &run, double from, double to) const
{
    const TextStyle &style = m_document.styleOf(m_page, run);
    const FontFace &face = *m_document.faces[style.face];
    const double unit = double(style.size.count()) / face.unitsPerEm();
    return {run.x + std::min(from, to), run.y - face.ascent() * unit, std::abs(to - from),
        (face.ascent() + face.descent()) * unit};
}

/// The place of the gap before each letter, and of that behind the last, in twips from the run's x.
std::vector<double> PageText::letterEdges(const TextRun &run) const
{
    if (run.shaped != 0)
        return shapedEdges(run);
    const TextStyle &style = m_document.styleOf(m_page, run);
    const FontFace &face = *m_document.faces[style.face];
    const double unit = double(style.size.count()) / face.unitsPerEm();
    std::vector<double> edges{0};
    edges.reserve(run.textLength + 1);
    for (const QChar c : m_page.runText(run))
        edges.push_back(edges.back() + face.plainGlyph(c.unicode()).advance * unit);
    return edges;
}

/// The shaper's glyphs do not say which letters they show: where there is one for each they mark
/// the gaps, else the letters share the run's width evenly.
std::vector<double> PageText::shapedEdges(const TextRun &run) const
{
    const ShapedGlyphs &shaped = m_page.shaped[run.shaped - 1];
    const FontFace &face = *m_document.faces[shaped.face];
    const double unit = double(m_document.styleOf(m_page, run).size.count()) / face.unitsPerEm();
    std::vector<double> gaps;
    double right = 0;
    for (size_t i = 0; i < shaped.glyphs.size(); ++i) {
        const double advance = face.advance(shaped.glyphs[i]) * unit;
        if (advance > 0)
            gaps.push_back(shaped.xOffsets[i]);
        right = std::max(right, shaped.xOffsets[i] + advance);
    }
    gaps.push_back(right);
    std::ranges::sort(gaps);

    const QStringView text = m_page.runText(run);
    const std::vector<qsizetype> starts = graphemeStarts(text);
    const size_t last = starts.size() - 1;
    const bool backwards = isRightToLeft(text);
    std::vector<double> edges(size_t(text.size()) + 1);
    for (size_t i = 0; i <= last; ++i) {
        const size_t fromLeft = backwards ? last - i : i;
        const double edge = gaps.size() == starts.size()
            ? gaps[fromLeft]
            : right * double(fromLeft) / double(std::max<size_t>(last, 1));
        const size_t end = i < last ? size_t(starts[i + 1]) : edges.size();
        std::fill(edges.begin() + starts[i], edges.begin() + qsizetype(end), edge);
    }
    return edges;
}

/// By height first, so that a click beside a line finds that line.
const TextRun *PageText::nearestRun(QPointF point) const
{
    const TextRun *nearest = nullptr;
    std::pair least(std::numeric_limits<double>::max(), 0.0);
    for (const TextRun &run : m_page.runs) {
        const QRectF line = lineArea(run, 0, 0);
        const double down = distance(point.y(), line.top(), line.bottom());
        if (run.textLength == 0 || down > least.first)
            continue;
        const std::pair away(down, distance(point.x(), run.x, run.x + letterEdges(run).back()));
        if (away < least) {
            least = away;
            nearest = &run;
        }
    }
    return nearest;
}

const Cell *PageText::cellAt(quint32 offset) const
{
    const auto after = std::ranges::upper_bound(
        m_cells, offset, {}, [](const Cell &cell) { return cell.text.begin; });
    return after == m_cells.begin() ? nullptr : &*std::prev(after);
}

} // namespace corvane

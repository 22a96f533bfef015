// The tables of PageComposer: format texts, heading rows, body rows and how rows break across pages.

#include "platform/composer/page_composer.h"

#include "platform/composer/composer_metrics.h"

#include <algorithm>

namespace corvane {

namespace {

constexpr Twips kCellPadding {80};
constexpr QRgb kCaptionFill = 0xfffff6d6;
constexpr size_t kLeastLinesOfTallRow = 3;

/// Black text reads well on every fill; a caption's classic yellow becomes a light one.
QRgb fillOf(int shade)
{
    if (shade == kCaptionShade)
        return kCaptionFill;
    const auto channel = [&](int shift) { return 255 - (255 - ((shade >> shift) & 0xff)) / 4; };
    return qRgb(channel(0), channel(8), channel(16));
}


Twips paddingOf(const ColumnFormat &column)
{
    return std::min(kCellPadding, column.width / 8);
}

} // namespace

void PageComposer::addTable(QStringView format, QStringView header, QStringView body, int headerShade, int bodyShade, TableFlow flow)
{
    const Format &columns = formatOf(format);
    if (columns.columns.empty())
        return;
    if (!header.isEmpty()) {
        if (m_runningHeading != header)
            m_runningHeading = header.toString();
        if (m_runningFormat.text != columns.text)
            m_runningFormat = columns;
        if (flow == TableFlow::Starts)
            drawHeading(header, columns, headerShade, Weight::Current, m_border);
    }
    if (body.isEmpty() && !header.isEmpty())
        return; // a heading alone, or a row that has no cells
    const bool isCaption = flow == TableFlow::Continues && header.isEmpty();
    drawRow(body, columns, {isCaption ? BlockKind::Caption : BlockKind::Row, Weight::Current, bodyShade});
}

const PageComposer::Format &PageComposer::formatOf(QStringView text)
{
    const auto known = std::ranges::find_if(m_formats, [&](const Format &format) { return format.text == text; });
    if (known != m_formats.end())
        return *known;
    auto parsed = parseColumnFormat(text);
    if (const auto *fault = std::get_if<FormatFault>(&parsed))
        throw ComposeError(QStringLiteral("The column layout \"%1\" cannot be used: %2 (character %3).")
                               .arg(text.left(80), fault->words)
                               .arg(fault->offset + 1));
    Format format {text.toString(), std::get<std::vector<ColumnFormat>>(std::move(parsed)), {}};
    for (const ColumnFormat &column : format.columns)
        format.width += column.width;
    narrowToColumn(format);
    return m_formats.emplace_back(std::move(format));
}

void PageComposer::narrowToColumn(Format &format)
{
    const Twips room = columnWidth();
    if (format.width <= room)
        return;
    m_document->notes += QStringLiteral("The columns \"%1\" are %2 inches wide and the page has room for %3: they were narrowed to fit (from page %4).")
                             .arg(format.text)
                             .arg(format.width.count() / 1440.0, 0, 'f', 2)
                             .arg(room.count() / 1440.0, 0, 'f', 2)
                             .arg(pageCount());
    const double scale = double(room.count()) / format.width.count();
    format.width = {};
    for (ColumnFormat &column : format.columns) {
        column.width = std::max(Twips(qint32(column.width.count() * scale)), Twips(1));
        format.width += column.width;
    }
}

void PageComposer::drawHeading(QStringView header, const Format &format, int shade, Weight weight, TableBorder border)
{
    if (border == TableBorder::AboveAndBelow) {
        // Kept with its rules: a heading never starts where only its upper rule would fit.
        const Twips height = font(weight).lineHeight + kRowPadding * 4;
        if (m_y + height > bottomLimit() && !isAtColumnTop())
            breakColumn();
        addRule(m_y);
        m_y += kRowPadding;
    }
    drawRow(header, format, {BlockKind::HeadingRow, weight, shade});
    if (border == TableBorder::AboveAndBelow) {
        m_y += kRowPadding;
        addRule(m_y);
        m_y += kRuleThickness;
    }
}

void PageComposer::addRule(Twips y)
{
    page().rects.push_back({columnLeft().count(), y.count(), columnWidth().count(), kRuleThickness.count(), kInk});
}

void PageComposer::drawRow(QStringView row, const Format &format, const RowLook &look)
{
    splitCells(row, qsizetype(format.columns.size()), m_cells);
    if (drawSingleLineRow(format, look))
        return;
    breakCells(format, look);
    const UsedFont used = font(look.weight);
    size_t lines = 1;
    for (size_t i = 0; i < m_cells.size(); ++i)
        lines = std::max(lines, m_cellLines[i].size());
    // Breaking a column draws the heading, which needs the cell lists: this row's are put aside.
    const auto breakHere = [&] {
        const auto cells = m_cells;
        const auto cellLines = m_cellLines;
        breakColumn();
        m_cells = cells;
        m_cellLines = cellLines;
    };
    const auto heightOf = [&](size_t count) { return used.lineHeight * qint32(count) + kRowPadding * 2; };
    // A row that no page can hold starts where it stands, as long as a few of its lines fit there.
    const bool tallerThanPage = heightOf(lines) > bottomLimit() - kMargin;
    const size_t wanted = tallerThanPage ? std::min(lines, kLeastLinesOfTallRow) : lines;
    if (m_y + heightOf(wanted) > bottomLimit() && !isAtColumnTop())
        breakHere();
    for (size_t done = 0; done < lines;) {
        const qint32 room = (bottomLimit() - m_y - kRowPadding * 2).count() / used.lineHeight.count();
        const size_t count = std::min(size_t(std::max(room, 1)), lines - done);
        startRow(format, look, heightOf(count), done > 0);
        placeCells(format, look, done, count);
        m_y += heightOf(count);
        done += count;
        if (done < lines)
            breakHere();
    }
}

bool PageComposer::drawSingleLineRow(const Format &format, const RowLook &look)
{
    const FontFace *face = font(look.weight).face.get();
    const double unitsPerTwip = double(face->unitsPerEm()) / fontTwips().count();
    m_cellUnits.clear();
    for (size_t i = 0; i < m_cells.size(); ++i) {
        const ColumnFormat &column = format.columns[i];
        const auto units = face->plainWidth(m_cells[i]);
        if (!units || *units > (column.width - paddingOf(column) * 2).count() * unitsPerTwip)
            return false;
        m_cellUnits.push_back(*units);
    }
    const Twips height = font(look.weight).lineHeight + kRowPadding * 2;
    if (m_y + height > bottomLimit() && !isAtColumnTop()) {
        const auto cells = m_cells;
        const auto units = m_cellUnits;
        breakColumn();
        m_cells = cells;
        m_cellUnits = units;
    }
    startRow(format, look, height);
    const UsedFont &used = font(look.weight);
    Page &here = page();
    const qint32 baseline = (m_y + kRowPadding + used.ascent).count();
    qint32 left = columnLeft().count();
    for (size_t i = 0; i < m_cells.size(); ++i) {
        const ColumnFormat &column = format.columns[i];
        const qint32 padding = paddingOf(column).count();
        if (!m_cells[i].isEmpty()) {
            const qint32 width = Twips::rounded(double(m_cellUnits[i]) / unitsPerTwip).count();
            const qint32 slack = column.width.count() - padding * 2 - width;
            const qint32 shift = column.alignment == Alignment::Left ? 0
                : column.alignment == Alignment::Right               ? slack
                                                                     : slack / 2;
            here.runs.push_back({left + padding + std::max(shift, 0), baseline, quint32(here.text.size()),
                quint32(m_cells[i].size()), 0, used.style, quint16(i)});
            here.text.append(m_cells[i]);
        }
        left += column.width.count();
    }
    m_y += height;
    return true;
}

void PageComposer::breakCells(const Format &format, const RowLook &look)
{
    const FontFacePtr face = font(look.weight).face;
    if (m_cellLines.size() < m_cells.size())
        m_cellLines.resize(m_cells.size());
    for (size_t i = 0; i < m_cells.size(); ++i) {
        const ColumnFormat &column = format.columns[i];
        const Twips width = std::max(column.width - paddingOf(column) * 2, Twips(1));
        m_cellLines[i] = m_breaker.breakLines(m_cells[i], *face, fontTwips(), width);
    }
}

void PageComposer::placeCells(const Format &format, const RowLook &look, size_t firstLine, size_t lineCount)
{
    const UsedFont used = font(look.weight);
    Twips left = columnLeft();
    for (size_t i = 0; i < m_cells.size(); ++i) {
        const ColumnFormat &column = format.columns[i];
        const Twips padding = paddingOf(column);
        const std::span<const Line> lines(m_cellLines[i]);
        if (firstLine < lines.size()) {
            placeLines(page(), m_cells[i], lines.subspan(firstLine, std::min(lineCount, lines.size() - firstLine)),
                {left + padding, column.width - padding * 2, m_y + kRowPadding + used.ascent, used.lineHeight,
                    int(column.alignment), used.style, quint16(i)}, m_faceIndex);
        }
        left += column.width;
    }
}

void PageComposer::startRow(const Format &format, const RowLook &look, Twips height, bool continued)
{
    openBlock(look.kind, format.columns.size(), height, continued);
    if (look.shade == kNoShade)
        return;
    const Twips width = look.kind == BlockKind::Caption ? columnWidth() : format.width;
    page().rects.push_back({columnLeft().count(), m_y.count(), width.count(), height.count(), fillOf(look.shade)});
}

void PageComposer::openBlock(BlockKind kind, size_t columns, Twips height, bool continued)
{
    page().blocks.push_back(
        {kind, continued, quint16(columns), quint32(page().runs.size()), m_y.count(), (m_y + height).count()});
}

} // namespace corvane

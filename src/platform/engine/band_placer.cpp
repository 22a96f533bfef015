#include "platform/engine/band_placer.h"

#include <algorithm>
#include <cmath>

namespace corvane {

namespace {

ItemSlice wholeOf(const BandItem &item)
{
    return {item.top, item.height, 0, item.lines(), true, false, {}};
}

std::vector<PlacedBand> allBands(const Galley &galley)
{
    std::vector<PlacedBand> placed;
    qint32 top = 0;
    for (const Band &band : galley.bands) {
        placed.push_back({&band, top, {}});
        top += band.height;
    }
    return placed;
}

} // namespace

void BandPlacer::place(const Band &band, qint32 x, qint32 y, qint32 width, Duplicates duplicates,
    const BandSlice *slice)
{
    Q_ASSERT(band.plan); // it is filled before it is placed
    m_page = m_document.pageCount() - 1;
    const Spot spot{band, x, y};
    if (band.plan->section->background)
        fill(x, y, width, slice ? slice->height : band.height, *band.plan->section->background);
    for (const auto &[depth, title] : band.outline) {
        if (!slice || !slice->isContinued)
            m_document.outline.push_back({title, m_page, Twips(y), depth});
    }
    const auto partOf = [&](size_t i) { return slice ? slice->items[i] : wholeOf(band.items[i]); };
    const auto isShown = [&](const BandItem &item) {
        return item.isVisible && !(item.isDuplicate && duplicates == Duplicates::Hide);
    };
    for (const quint16 i :
        band.plan->isPlain ? std::span<const quint16>() : band.plan->paintOrder) {
        const BandItem &item = band.items[i];
        if (isShown(item) && !item.isOfPage && (!slice || slice->items[i].isShown))
            paint(spot, item, partOf(i));
    }
    m_line = -1;
    for (size_t i = 0; i < band.items.size(); ++i) {
        if (!slice || slice->items[i].isShown)
            placeItem(spot, band.items[i], partOf(i), isShown(band.items[i]));
    }
}

/// What a field has beside its painted part: letters, links, the bands of a sub-report.
void BandPlacer::placeItem(
    const Spot &spot, const BandItem &item, const ItemSlice &part, bool isShown)
{
    const FieldPlan &plan = spot.band.plan->fields[item.field];
    const bool isPicture = plan.field->kind == FieldKind::Picture && item.lines() == 0;
    if (plan.field->kind == FieldKind::Subreport && item.lines() == 0) {
        if (isShown)
            placeGalley(spot, item, part);
        m_line = -1;
        return;
    }
    if (!plan.isFrame() && !isPicture)
        startBlock(spot, item, part);
    if (item.isOfPage) {
        wait(spot, item, part);
    } else if (isShown && !plan.isFrame()) {
        putText(spot, item, part);
        putReferences(spot, item, part);
        if (!part.isContinued)
            count(spot, item);
    }
}

void BandPlacer::placeGalley(const Spot &spot, const BandItem &item, const ItemSlice &slice)
{
    const BandExtra *extra = spot.band.extraOf(item);
    if (!extra || !extra->galley)
        return;
    const Field &field = spot.band.fieldOf(item);
    const SectionPlan *above = nullptr;
    for (const PlacedBand &inner : slice.bands.empty() ? allBands(*extra->galley) : slice.bands) {
        place(*inner.band, spot.x + field.x.count(), spot.y + slice.top + inner.top,
            field.width.count(), above == inner.band->plan ? Duplicates::Hide : Duplicates::Show,
            inner.slice.get());
        above = inner.band->plan;
    }
}

void BandPlacer::count(const Spot &spot, const BandItem &item)
{
    if (item.isCut)
        m_cut.add(m_page);
    if (item.isFaulty)
        m_faults.add(m_page, spot.band.extraOf(item)->fault);
    if (const BandExtra *extra = spot.band.extraOf(item); extra && !extra->referenceFault.isEmpty())
        m_referenceFaults.add(m_page, extra->referenceFault);
}

void BandPlacer::fill(qint32 x, qint32 y, qint32 width, qint32 height, QRgb colour)
{
    if (width > 0 && height > 0)
        page().rects.push_back({x, y, width, height, colour});
}

void BandPlacer::paint(const Spot &spot, const BandItem &item, const ItemSlice &slice)
{
    const Field &field = spot.band.fieldOf(item);
    const FieldLook &look = item.look->look;
    const QRect frame(
        spot.x + field.x.count(), spot.y + slice.top, field.width.count(), slice.height);
    if (field.kind == FieldKind::Line) {
        fill(frame.x(), frame.y(), frame.width(), frame.height(), look.colour);
        return;
    }
    if (look.background)
        fill(frame.x(), frame.y(), frame.width(), frame.height(), *look.background);
    paintBorder(look.border, frame);
    const BandExtra *extra = spot.band.extraOf(item);
    if (!extra)
        return;
    for (const FilledRect &bar : extra->bars)
        fill(frame.x() + bar.x, frame.y() + bar.y, bar.width, bar.height, bar.colour);
    if (extra->picture >= 0) {
        const QRect at = extra->pictureFrame.translated(frame.topLeft());
        page().pictures.push_back({at.x(), at.y(), at.width(), std::min(at.height(), slice.height),
            quint32(extra->picture), field.description});
    }
}

void BandPlacer::paintBorder(const Border &border, const QRect &frame)
{
    const auto [x, y] = std::pair(frame.x(), frame.y());
    const auto [width, height] = std::pair(frame.width(), frame.height());
    fill(x, y, width, border.top.count(), border.colour);
    fill(x, y + height - border.bottom.count(), width, border.bottom.count(), border.colour);
    fill(x, y, border.left.count(), height, border.colour);
    fill(x + width - border.right.count(), y, border.right.count(), height, border.colour);
}

/// One block for each line of fields; it reaches from the top to the bottom of its fields.
void BandPlacer::startBlock(const Spot &spot, const BandItem &item, const ItemSlice &slice)
{
    const FieldPlan &plan = spot.band.plan->fields[item.field];
    const qint32 top = spot.y + slice.top;
    const qint32 bottom = top + slice.height;
    if (plan.line != m_line) {
        m_line = plan.line;
        const LinePlan &line = spot.band.plan->lines[plan.line];
        page().blocks.push_back({line.kind, slice.isContinued, line.columnCount,
            quint32(page().runs.size()), top, bottom});
        return;
    }
    Block &block = page().blocks.back();
    block.top = std::min(block.top, top);
    block.bottom = std::max(block.bottom, bottom);
    block.continuesPreviousPage = block.continuesPreviousPage || slice.isContinued;
}

void BandPlacer::putText(const Spot &spot, const BandItem &item, const ItemSlice &slice)
{
    if (item.textLength == 0 || slice.lineCount == 0)
        return;
    const FieldPlan &plan = spot.band.plan->fields[item.field];
    const TextLook &look = *item.look;
    const qint32 padding = look.look.padding.count();
    const qint32 textHeight = look.lineHeight.count() * qint32(slice.lineCount);
    const qint32 slack = std::max(slice.height - 2 * padding - textHeight, 0);
    // Letters of a barcode stand below its bars.
    const auto vertical = plan.field->kind == FieldKind::Barcode && !item.isFaulty
        ? VerticalAlignment::Bottom
        : look.look.vertical;
    const qint32 drop = vertical == VerticalAlignment::Top ? 0
        : vertical == VerticalAlignment::Middle            ? slack / 2
                                                           : slack;
    const qint32 left = spot.x + plan.field->x.count() + padding;
    const qint32 width = std::max(plan.field->width.count() - 2 * padding, 1);
    const qint32 baseline = spot.y + slice.top + padding + drop + look.ascent.count();
    const auto text = QStringView(spot.band.text).sliced(item.textStart, item.textLength);
    const auto alignment = plan.field->kind == FieldKind::Barcode ? HorizontalAlignment::Centre
                                                                  : look.look.horizontal;
    Page &here = page();
    const size_t firstRun = here.runs.size();
    if (item.lineCount == 0) {
        const qint32 gap = std::max(width - item.lineWidth, 0);
        const qint32 shift = alignment == HorizontalAlignment::Left ? 0
            : alignment == HorizontalAlignment::Centre              ? gap / 2
                                                                    : gap;
        here.runs.push_back({left + shift, baseline, quint32(here.text.size()), item.textLength, 0,
            look.style, plan.column});
        here.text += text;
    } else {
        const std::span<const Line> lines(spot.band.lines);
        placeLines(here, text, lines.subspan(item.firstLine + slice.firstLine, slice.lineCount),
            {Twips(left), Twips(width), Twips(baseline), look.lineHeight, int(alignment),
                look.style, plan.column},
            m_faceIndex);
    }
    if (look.look.underline)
        underline(firstRun, spot, item);
}

/// A line below each run, as thick and as deep as the font asks for.
void BandPlacer::underline(size_t firstRun, const Spot &spot, const BandItem &item)
{
    const TextLook &look = *item.look;
    const QRawFont &font = look.face->rawFont();
    const qint32 thickness
        = std::max(int(std::lround(font.lineThickness() / look.unitsPerTwip)), 8);
    const qint32 drop
        = int(std::lround(font.underlinePosition() / look.unitsPerTwip)) - thickness / 2;
    Page &here = page();
    for (size_t i = firstRun; i < here.runs.size(); ++i) {
        const TextRun &run = here.runs[i];
        const auto units = look.face->plainWidth(here.runText(run));
        qint32 width = units ? qint32(std::lround(double(*units) / look.unitsPerTwip)) : 0;
        if (!units && run.shaped > 0 && !here.shaped[run.shaped - 1].glyphs.empty()) {
            const ShapedGlyphs &glyphs = here.shaped[run.shaped - 1];
            const FontFace &face = *m_document.faces[glyphs.face];
            const double last
                = face.advance(glyphs.glyphs.back()) * look.size.count() / face.unitsPerEm();
            width = qint32(std::lround(double(*std::ranges::max_element(glyphs.xOffsets)) + last));
        }
        fill(run.x, run.y + std::max(drop, 1), width, thickness, look.look.colour);
    }
    Q_UNUSED(spot)
}

void BandPlacer::putReferences(const Spot &spot, const BandItem &item, const ItemSlice &slice)
{
    const BandExtra *extra = spot.band.extraOf(item);
    if (!extra)
        return;
    const Field &field = spot.band.fieldOf(item);
    if (!extra->link.isEmpty() && slice.height > 0)
        page().links.push_back({spot.x + field.x.count(), spot.y + slice.top, field.width.count(),
            slice.height, extra->link});
    if (!extra->bookmark.isEmpty() && !slice.isContinued)
        m_document.bookmarks.push_back({extra->bookmark, m_page, Twips(spot.y + slice.top)});
}

void BandPlacer::wait(const Spot &spot, const BandItem &item, const ItemSlice &slice)
{
    const BandExtra *extra = spot.band.extraOf(item);
    PageField field{m_page, quint32(page().runs.size()),
        quint32(std::max<size_t>(page().blocks.size(), 1) - 1), spot.band.plan, item.field,
        spot.band.context, spot.band.position, spot.x, spot.y + slice.top, slice.height, {}};
    field.running = extra->running;
    // Aggregates that follow the pages count rows as they are placed: now, not when the row was
    // read.
    const FieldPlan &plan = spot.band.plan->fields[item.field];
    for (const int binding : {plan.value, plan.visibleWhen, plan.link}) {
        for (const auto &[aggregate, value] : spot.band.context->snapshot(binding)) {
            if (!spot.band.context->plan().aggregates()[size_t(aggregate)].followsPages)
                continue;
            const auto known = std::ranges::find(
                field.running, aggregate, &RowContext::Snapshot::value_type::first);
            if (known != field.running.end())
                known->second = value;
        }
    }
    m_pageFields.push_back(std::move(field));
}

void BandPlacer::placeLate(const PageField &where, const Band &filled, quint32 runsBefore)
{
    m_page = where.page;
    Page &here = page();
    const BandItem &item = filled.items.front();
    const Spot spot{filled, where.x, where.top};
    const ItemSlice slice{0, where.height, 0, item.lines(), true, false, {}};
    if (!item.isVisible)
        return;
    paint(spot, item, slice);
    const std::vector<TextRun> behind(here.runs.begin() + where.run + runsBefore, here.runs.end());
    here.runs.resize(where.run + runsBefore);
    putText(spot, item, slice);
    const auto added = quint32(here.runs.size()) - (where.run + runsBefore);
    here.runs.insert(here.runs.end(), behind.begin(), behind.end());
    for (size_t block = where.block + 1; block < here.blocks.size(); ++block)
        here.blocks[block].firstRun += added;
    putReferences(spot, item, slice);
    count(spot, item);
}

QStringList BandPlacer::notes() const
{
    QStringList notes;
    for (const QString &note :
        {m_cut.note(QStringLiteral("value was cut"), QStringLiteral("values were cut")),
            m_faults.note(QStringLiteral("value could not be computed and shows as #"),
                QStringLiteral("values could not be computed and show as #")),
            m_referenceFaults.note(
                QStringLiteral("link or bookmark could not be computed and is missing"),
                QStringLiteral("links or bookmarks could not be computed and are missing"))}) {
        if (!note.isEmpty())
            notes += note;
    }
    return notes;
}

} // namespace corvane

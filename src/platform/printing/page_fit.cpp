#include "platform/printing/page_fit.h"

#include <algorithm>

namespace corvane {

namespace {

/// Printers tell their margins in whole points or tenths of millimetres.
constexpr double kRounding = 20;

template <typename Area> QRectF rectOf(const Area &area)
{
    return QRectF(area.x, area.y, area.width, area.height);
}

double widthOf(const Document &document, const Page &page, const TextRun &run)
{
    const TextStyle &style = document.styleOf(page, run);
    if (run.shaped == 0) {
        const FontFace &face = *document.faces[style.face];
        return double(face.plainWidth(page.runText(run)).value_or(0)) * style.size.count()
            / face.unitsPerEm();
    }
    const ShapedGlyphs &shaped = page.shaped[run.shaped - 1];
    // Right-to-left glyphs may come in either order; the em beyond stands for the last one's
    // advance.
    return shaped.xOffsets.empty()
        ? 0
        : double(*std::ranges::max_element(shaped.xOffsets)) + style.size.count();
}

QRectF inkedArea(const Document &document, const Page &page)
{
    QRectF ink;
    for (const FilledRect &rect : page.rects)
        ink |= rectOf(rect);
    for (const PlacedPicture &picture : page.pictures)
        ink |= rectOf(picture);
    for (const TextRun &run : page.runs) {
        const double size = document.styleOf(page, run).size.count();
        ink |= QRectF(run.x, run.y - size, widthOf(document, page, run), size * 1.25);
    }
    return ink;
}

QPointF centred(QSizeF inner, const QRectF &outer)
{
    return outer.center() - QPointF(inner.width(), inner.height()) / 2;
}

} // namespace

QRectF inkedArea(const Document &document, std::span<const int> pages)
{
    QRectF ink;
    for (const int page : pages) {
        ink |= inkedArea(document, document.pages[size_t(page)]);
        ink |= inkedArea(document, pageFurniture(document, page));
    }
    return ink;
}

PageFit fitPage(QSizeF page, const QRectF &ink, QSizeF paper, const QRectF &printable)
{
    const QPointF origin = centred(page, QRectF({}, paper));
    const QRectF reach = printable.marginsAdded({kRounding, kRounding, kRounding, kRounding});
    if (ink.isEmpty() || reach.contains(ink.translated(origin)))
        return {1, origin};
    const double scale
        = std::min({1.0, printable.width() / page.width(), printable.height() / page.height()});
    return {scale, centred(page * scale, printable)};
}

} // namespace corvane

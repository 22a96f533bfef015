#include "platform/painting/page_painter.h"

#include <QtGui/QGlyphRun>
#include <QtGui/QPainter>

#include <cmath>

namespace corvane {

namespace {

constexpr size_t kMostFonts = 64;

/// Puts the edges on whole device pixels, so that equal rules look equal; nothing gets thinner than one.
QRectF onDevicePixels(const QRectF &rect, const QTransform &toDevice)
{
    if (toDevice.type() > QTransform::TxScale)
        return rect;
    const QRectF device = toDevice.mapRect(rect);
    const double left = std::round(device.left());
    const double top = std::round(device.top());
    const double width = std::max(1.0, std::round(device.right()) - left);
    const double height = std::max(1.0, std::round(device.bottom()) - top);
    return toDevice.inverted().mapRect(QRectF(left, top, width, height));
}

/// The device pixel that a baseline starts in, as viewers of PDF files place it: glyphs are drawn on whole
/// pixels vertically, and rounded to the nearest one instead, every other line would stand a pixel lower
/// here than there.
double onDevicePixel(double y, const QTransform &toDevice)
{
    constexpr double kOnTheEdge = 1e-3; // what multiplying leaves short of a whole pixel
    if (toDevice.type() > QTransform::TxScale)
        return y;
    return (std::floor(toDevice.m22() * y + toDevice.dy() + kOnTheEdge) - toDevice.dy()) / toDevice.m22();
}

} // namespace

/// One call of paint().
struct PagePainter::Job {
    QPainter &painter;
    const Document &document;
    double scale;
    double top;    ///< of what is visible, twips
    double bottom;
    QTransform toDevice;

    bool shows(double from, double to) const { return from <= bottom && to >= top; }

    template<typename Area>
    QRectF scaled(const Area &area) const
    {
        return {area.x * scale, area.y * scale, area.width * scale, area.height * scale};
    }
};

int PagePainter::paint(
    QPainter &painter, const Document &document, int pageIndex, double pixelsPerTwip, const QRectF &visible)
{
    Job job {painter, document, pixelsPerTwip, visible.top() / pixelsPerTwip, visible.bottom() / pixelsPerTwip,
        painter.deviceTransform()};
    painter.save();
    const int furniture = paintPart(job, pageFurniture(document, pageIndex));
    const int body = paintPart(job, document.pages[size_t(pageIndex)]);
    painter.restore();
    return furniture + body;
}

int PagePainter::paintPart(Job &job, const Page &page)
{
    return paintRects(job, page) + paintPictures(job, page) + paintText(job, page);
}

int PagePainter::paintRects(Job &job, const Page &page)
{
    int count = 0;
    for (const FilledRect &rect : page.rects) {
        if (!job.shows(rect.y, rect.y + rect.height))
            continue;
        job.painter.fillRect(onDevicePixels(job.scaled(rect), job.toDevice), QColor::fromRgba(rect.colour));
        ++count;
    }
    return count;
}

int PagePainter::paintPictures(Job &job, const Page &page)
{
    int count = 0;
    for (const PlacedPicture &placed : page.pictures) {
        if (!job.shows(placed.y, placed.y + placed.height))
            continue;
        const Picture &picture = job.document.pictures[placed.picture];
        job.painter.setRenderHint(QPainter::SmoothPixmapTransform);
        // Only what was a photograph before may be compressed like one on its way to the printer.
        job.painter.setRenderHint(QPainter::LosslessImageRendering, picture.jpeg.isEmpty());
        job.painter.drawImage(onDevicePixels(job.scaled(placed), job.toDevice), picture.image);
        ++count;
    }
    return count;
}

int PagePainter::paintText(Job &job, const Page &page)
{
    int count = 0;
    m_collected.resize(job.document.styles.size() + page.ownStyles.size());
    for (const TextRun &run : page.runs) {
        const qint32 size = job.document.styleOf(page, run).size.count();
        if (!job.shows(run.y - 2 * size, run.y + size))
            continue;
        if (run.shaped != 0)
            drawShaped(job, page, run);
        else
            collect(job, page, run);
        ++count;
    }
    drawCollected(job, page);
    return count;
}

/// Plain runs are gathered by style: one call draws all of a style, wherever they stand.
void PagePainter::collect(const Job &job, const Page &page, const TextRun &run)
{
    const TextStyle &style = job.document.styleOf(page, run);
    const FontFace &face = *job.document.faces[style.face];
    const double unit = style.size.count() * job.scale / face.unitsPerEm();
    Glyphs &glyphs = m_collected[run.style];
    double x = run.x * job.scale;
    const double y = onDevicePixel(run.y * job.scale, job.toDevice);
    for (const QChar c : page.runText(run)) {
        const FontFace::Glyph glyph = face.plainGlyph(c.unicode());
        if (c != u' ') {
            glyphs.indexes.push_back(glyph.index);
            glyphs.positions.emplace_back(x, y);
        }
        x += glyph.advance * unit;
    }
}

void PagePainter::drawShaped(Job &job, const Page &page, const TextRun &run)
{
    const ShapedGlyphs &shaped = page.shaped[run.shaped - 1];
    const TextStyle &style = job.document.styleOf(page, run);
    QList<QPointF> positions;
    positions.reserve(qsizetype(shaped.glyphs.size()));
    for (size_t i = 0; i < shaped.glyphs.size(); ++i)
        positions.emplaceBack((run.x + shaped.xOffsets[i]) * job.scale,
            onDevicePixel((run.y + shaped.yOffsets[i]) * job.scale, job.toDevice));
    QGlyphRun glyphs;
    glyphs.setRawFont(fontAt(job.document.faces[shaped.face], style.size.count() * job.scale));
    glyphs.setRawData(shaped.glyphs.data(), positions.constData(), int(positions.size()));
    job.painter.setPen(QColor::fromRgba(style.colour));
    job.painter.drawGlyphRun({}, glyphs);
}

void PagePainter::drawCollected(Job &job, const Page &page)
{
    for (size_t i = 0; i < m_collected.size(); ++i) {
        Glyphs &collected = m_collected[i];
        if (collected.indexes.empty())
            continue;
        const auto &styles = job.document.styles;
        const TextStyle &style = i < styles.size() ? styles[i] : page.ownStyles[i - styles.size()];
        QGlyphRun glyphs;
        glyphs.setRawFont(fontAt(job.document.faces[style.face], style.size.count() * job.scale));
        glyphs.setRawData(collected.indexes.data(), collected.positions.data(), int(collected.indexes.size()));
        job.painter.setPen(QColor::fromRgba(style.colour));
        job.painter.drawGlyphRun({}, glyphs);
        collected.indexes.clear();
        collected.positions.clear();
    }
}

const QRawFont &PagePainter::fontAt(const FontFacePtr &face, double pixelSize)
{
    const auto known = m_fonts.find({face, pixelSize});
    if (known != m_fonts.end())
        return known->second;
    if (m_fonts.size() >= kMostFonts)
        m_fonts.clear();
    QRawFont font = face->rawFont();
    font.setPixelSize(pixelSize);
    return m_fonts.emplace(std::pair(face, pixelSize), font).first->second;
}

} // namespace corvane

#include "support/document_builder.h"

#include <QtCore/QTextBoundaryFinder>
#include <QtGui/QGlyphRun>
#include <QtGui/QTextLayout>

#include <algorithm>

namespace corvane::test {

namespace {

constexpr qint32 kMargin = 1440;
constexpr qint32 kLine = 240;
constexpr int kShaperPixels = 1000;

/// Letters of a line in one font and one direction.
struct Stretch {
    int begin = 0;
    int end = 0;
};

std::vector<Stretch> stretchesOf(const QTextLine &line, const QString &text)
{
    std::vector<Stretch> stretches;
    QTextBoundaryFinder graphemes(QTextBoundaryFinder::Grapheme, text);
    QGlyphRun last;
    for (int at = 0; at < text.size();) {
        const int end = int(graphemes.toNextBoundary());
        const QGlyphRun run = line.glyphRuns(at, end - at).value(0);
        if (stretches.empty() || run.rawFont() != last.rawFont() || run.isRightToLeft() != last.isRightToLeft())
            stretches.push_back({at, at});
        stretches.back().end = end;
        last = run;
        at = end;
    }
    return stretches;
}

} // namespace

DocumentBuilder::DocumentBuilder()
{
    m_document.info = {QStringLiteral("Test"), QStringLiteral("test.rpt"), QStringLiteral("ada"),
        QStringLiteral("01/01/2026 to 01/31/2026"),
        QDateTime(QDate(2026, 11, 22), QTime(9, 5), Qt::OffsetFromUTC, -5 * 3600), QStringLiteral("en-US")};
    setStyle(QStringLiteral("Liberation Sans"), 10);
}

quint16 DocumentBuilder::faceIndex(const FontFacePtr &face)
{
    const auto known = std::ranges::find(m_document.faces, face);
    if (known != m_document.faces.end())
        return quint16(known - m_document.faces.begin());
    m_document.faces.push_back(face);
    return quint16(m_document.faces.size() - 1);
}

void DocumentBuilder::setStyle(const QString &family, double points, bool bold, QRgb colour)
{
    setStyle(m_library.face(family, bold), points, colour);
}

void DocumentBuilder::setStyle(const FontFacePtr &face, double points, QRgb colour)
{
    m_document.styles.push_back({faceIndex(face), Twips::fromPoints(points), colour});
    m_style = quint16(m_document.styles.size() - 1);
}

void DocumentBuilder::newPage()
{
    m_document.pages.emplace_back();
    m_y = kMargin;
}

Page &DocumentBuilder::page()
{
    if (m_document.pages.empty())
        newPage();
    return m_document.pages.back();
}

void DocumentBuilder::startBlock(BlockKind kind, quint16 columns)
{
    Page &where = page();
    m_y += kLine;
    where.blocks.push_back({kind, false, columns, quint32(where.runs.size()), m_y - kLine, m_y});
}

TextRun DocumentBuilder::addText(QStringView text, qint32 x)
{
    const auto start = quint32(page().text.size());
    page().text += text;
    return {x, m_y, start, quint32(text.size()), 0, m_style, 0};
}

void DocumentBuilder::paragraph(const QString &text)
{
    startBlock(BlockKind::Paragraph, 1);
    page().runs.push_back(addText(text, kMargin));
}

void DocumentBuilder::row(const QStringList &cells, const std::vector<qint32> &places)
{
    startBlock(BlockKind::Row, quint16(cells.size()));
    for (qsizetype i = 0; i < cells.size(); ++i) {
        if (cells[i].isEmpty())
            continue;
        TextRun run = addText(cells[i], places[size_t(i)]);
        run.column = quint16(i);
        page().runs.push_back(run);
    }
}

void DocumentBuilder::shapedParagraph(const QString &text)
{
    startBlock(BlockKind::Paragraph, 1);
    const TextStyle style = m_document.styles[m_style];
    QFont font(m_document.faces[style.face]->family());
    font.setPixelSize(kShaperPixels);
    font.setHintingPreference(QFont::PreferNoHinting);
    QTextLayout layout(text, font);
    layout.beginLayout();
    QTextLine line = layout.createLine();
    line.setLineWidth(1e7);
    layout.endLayout();

    const double twips = double(style.size.count()) / kShaperPixels;
    const double left = line.naturalTextRect().left();
    const double baseline = line.y() + line.ascent();
    for (const Stretch &stretch : stretchesOf(line, text)) {
        TextRun run = addText(QStringView(text).sliced(stretch.begin, stretch.end - stretch.begin), kMargin);
        ShapedGlyphs shaped;
        for (const QGlyphRun &glyphRun : line.glyphRuns(stretch.begin, stretch.end - stretch.begin)) {
            shaped.face = faceIndex(m_library.face(glyphRun.rawFont()));
            const QList<quint32> glyphs = glyphRun.glyphIndexes();
            shaped.glyphs.insert(shaped.glyphs.end(), glyphs.begin(), glyphs.end());
            for (const QPointF &at : glyphRun.positions()) {
                shaped.xOffsets.push_back(float((at.x() - left) * twips));
                shaped.yOffsets.push_back(float((at.y() - baseline) * twips));
            }
        }
        page().shaped.push_back(std::move(shaped));
        run.shaped = quint32(page().shaped.size());
        page().runs.push_back(run);
    }
}

void DocumentBuilder::glyphParagraph(const QString &text)
{
    startBlock(BlockKind::Paragraph, 1);
    const TextStyle style = m_document.styles[m_style];
    const FontFace &face = *m_document.faces[style.face];
    ShapedGlyphs shaped;
    shaped.face = style.face;
    double x = 0;
    for (const quint32 glyph : face.rawFont().glyphIndexesForString(text)) {
        shaped.glyphs.push_back(glyph);
        shaped.xOffsets.push_back(float(x));
        shaped.yOffsets.push_back(0);
        x += face.advance(glyph) * style.size.count() / face.unitsPerEm();
    }
    TextRun run = addText(text, kMargin);
    page().shaped.push_back(std::move(shaped));
    run.shaped = quint32(page().shaped.size());
    page().runs.push_back(run);
}

void DocumentBuilder::rect(qint32 x, qint32 y, qint32 width, qint32 height, QRgb colour)
{
    page().rects.push_back({x, y, width, height, colour});
}

Document DocumentBuilder::finish()
{
    m_document.isWhole = true;
    return std::exchange(m_document, {});
}

} // namespace corvane::test

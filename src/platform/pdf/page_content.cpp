#include "platform/pdf/page_content.h"

#include "platform/pdf/glyph_clusters.h"

#include <charconv>
#include <cmath>

namespace corvane {

namespace {

/// Bytes that a letter takes at the most: the string before it closed, a font chosen, two for itself.
constexpr size_t kMostPerLetter = 40;
/// A glyph may start at its own position besides.
constexpr size_t kMostPerGlyph = kMostPerLetter + 64;
/// A glyph this close to where its neighbour's advance leaves it needs no position of its own, in
/// hundredths of a point.
constexpr double kSamePlace = 2.0;

char *put(char *at, std::string_view bytes)
{
    return std::copy(bytes.begin(), bytes.end(), at);
}

/// Whether a run goes from right to left with glyphs in one place of the line, as two halves of a
/// ligature are. Runs stay in reading order, which poppler and mupdf both follow. Only in this case
/// poppler loses its way and needs the glyphs from left to right, which mupdf then does not turn.
bool isStackedLeftwards(const ShapedGlyphs &shaped)
{
    constexpr float kApart = 10; // twips
    bool isStacked = false;
    for (size_t i = 1; i < shaped.glyphs.size(); ++i)
        isStacked = isStacked
            || (shaped.xOffsets[i] > shaped.xOffsets[i - 1] - kApart && shaped.yOffsets[i] == shaped.yOffsets[i - 1]);
    return isStacked && shaped.xOffsets.back() < shaped.xOffsets.front();
}

} // namespace

PageContent::PageContent(
    const Document &document, FontCodes &codes, const PictureObjects &pictures, PageTags *tags)
    : m_document(document)
    , m_codes(codes)
    , m_pictures(pictures)
    , m_tags(tags)
    , m_paperHeight(hundredthsOf(document.paperHeight.count()))
{
}

std::string PageContent::fontName(size_t font)
{
    return "F" + std::to_string(font + 1);
}

std::string_view PageContent::write(int pageIndex)
{
    static const Page blank;
    const Page &body = pageIndex < m_document.pageCount() ? m_document.pages[size_t(pageIndex)] : blank;
    const Page furniture = pageFurniture(m_document, pageIndex);

    m_out.clear();
    m_colour = 0xff000000;
    m_size = Twips();
    m_x = m_y = 0;
    const bool hasRects = !body.rects.empty() || !furniture.rects.empty();
    if (m_tags && hasRects)
        m_out.text("/Artifact<</Type/Layout>>BDC\n");
    fill(body.rects);
    fill(furniture.rects);
    if (m_tags && hasRects)
        m_out.text(PageTags::kEnd);
    draw(body.pictures);
    if (!body.runs.empty() || !furniture.runs.empty() || m_tags)
        showText(body, furniture);
    return m_out.bytes();
}

void PageContent::draw(const std::vector<PlacedPicture> &pictures)
{
    for (const PlacedPicture &placed : pictures) {
        if (!m_pictures.holds(placed.picture))
            continue;
        if (m_tags)
            m_tags->openPicture(m_out, placed);
        m_out.text("q ");
        m_out.number(hundredthsOf(placed.width));
        m_out.text("0 0 ");
        m_out.number(hundredthsOf(placed.height));
        m_out.number(hundredthsOf(placed.x));
        m_out.number(m_paperHeight - hundredthsOf(placed.y + placed.height));
        m_out.text("cm /" + PictureObjects::nameOf(placed.picture) + " Do Q\n");
        if (m_tags)
            m_out.text(PageTags::kEnd);
    }
}

void PageContent::showText(const Page &body, const Page &furniture)
{
    m_out.text("BT\n");
    if (!furniture.blocks.empty())
        showFurniture(furniture, 0);
    showBody(body);
    for (size_t block = 1; block < furniture.blocks.size(); ++block)
        showFurniture(furniture, block);
    m_out.text("ET\n");
}

void PageContent::showFurniture(const Page &furniture, size_t block)
{
    const std::span<const TextRun> runs = furniture.blockRuns(block);
    if (runs.empty())
        return;
    if (m_tags) {
        m_out.text(block == 0 ? "/Artifact<</Type/Pagination/Subtype/Header>>BDC\n"
                              : "/Artifact<</Type/Pagination/Subtype/Footer>>BDC\n");
    }
    show(furniture, runs);
    if (m_tags)
        m_out.text(PageTags::kEnd);
}

void PageContent::showBody(const Page &page)
{
    if (!m_tags) {
        show(page, page.runs);
        return;
    }
    for (size_t block = 0; block < page.blocks.size(); ++block) {
        m_tags->beginBlock(page, block);
        for (std::span<const TextRun> rest = page.blockRuns(block); !rest.empty();) {
            const size_t count = m_tags->openRuns(m_out, rest);
            show(page, rest.first(count));
            m_out.text(PageTags::kEnd);
            rest = rest.subspan(count);
        }
    }
    m_tags->endPage();
}

void PageContent::fill(const std::vector<FilledRect> &rects)
{
    bool isOpen = false;
    for (const FilledRect &rect : rects) {
        if (isOpen && (rect.colour | 0xff000000) != m_colour) {
            m_out.text("f\n");
            isOpen = false;
        }
        setColour(rect.colour);
        m_out.number(hundredthsOf(rect.x));
        m_out.number(m_paperHeight - hundredthsOf(rect.y + rect.height));
        m_out.number(hundredthsOf(rect.width));
        m_out.number(hundredthsOf(rect.height));
        m_out.text("re\n");
        isOpen = true;
    }
    if (isOpen)
        m_out.text("f\n");
}

void PageContent::show(const Page &page, std::span<const TextRun> runs)
{
    for (size_t i = 0; i < runs.size(); ++i) {
        const TextRun &run = runs[i];
        const TextStyle &style = m_document.styleOf(page, run);
        setColour(style.colour);
        if (run.shaped > 0) {
            showShaped(style, run, page.shaped[run.shaped - 1], page.runText(run));
        } else if (run.textLength > 0) {
            // A reader of tags joins the lines of a cell: the blank that they were broken at goes with them.
            const bool isBroken = m_tags && i + 1 < runs.size() && runs[i + 1].column == run.column
                && runs[i + 1].textStart > run.textStart + run.textLength;
            showPlain(style, run, QStringView(page.text).sliced(run.textStart, run.textLength + (isBroken ? 1 : 0)));
        }
    }
}

void PageContent::showPlain(const TextStyle &style, const TextRun &run, QStringView text)
{
    FaceCodes &face = m_codes.face(style.face);
    char *at = m_out.room(size_t(text.size()) * kMostPerLetter + kMostPerGlyph);
    at = putMove(at, hundredthsOf(run.x), m_paperHeight - hundredthsOf(run.y));
    bool isOpen = false;
    for (const QChar c : text) {
        const FontCode code = face.character(c.unicode());
        if (code.font() != m_font || style.size != m_size) {
            if (isOpen)
                at = put(at, ")Tj\n");
            isOpen = false;
            at = putFont(at, code.font(), style.size);
        }
        if (!isOpen)
            *at++ = '(';
        isOpen = true;
        at = ContentStream::putStringByte(at, code.code());
    }
    m_out.commit(put(at, ")Tj\n"));
}

/// A glyph that stands for its letters alone has a code that says so. Glyphs that share letters (a
/// letter and its marks set apart, parts in another order) stand together in an ActualText span
/// (ISO 32000-1, 14.9.4). Not the whole run in one: poppler reverses right-to-left letters in it.
void PageContent::showShaped(
    const TextStyle &style, const TextRun &run, const ShapedGlyphs &shaped, QStringView text)
{
    FaceCodes &face = m_codes.face(shaped.face);
    const auto left = double(hundredthsOf(run.x));
    const auto baseline = double(m_paperHeight - hundredthsOf(run.y));
    std::vector<GlyphCluster> clusters = glyphClusters(face.program(), shaped.glyphs, text);
    if (isStackedLeftwards(shaped))
        std::ranges::reverse(clusters);
    for (const GlyphCluster &cluster : clusters) {
        const QStringView letters = text.sliced(cluster.textBegin, cluster.textEnd - cluster.textBegin);
        const bool isAlone = cluster.glyphEnd - cluster.glyphBegin == 1 && !letters.isEmpty();
        if (!isAlone)
            openSpan(letters);
        for (size_t i = cluster.glyphBegin; i < cluster.glyphEnd; ++i) {
            const quint32 glyph = shaped.glyphs[i];
            const FaceCodes::Placed &placed = face.glyph(glyph, isAlone ? letters : QStringView(face.program().glyphText(glyph)));
            showGlyph(style, placed, left + double(shaped.xOffsets[i]) * hundredthsOf(1),
                baseline - double(shaped.yOffsets[i]) * hundredthsOf(1));
            m_penX += double(placed.advance) * hundredthsOf(style.size.count()) / face.face().unitsPerEm();
        }
        if (!isAlone) {
            closeString();
            m_out.text("EMC\n");
        }
    }
    closeString();
}

void PageContent::openSpan(QStringView letters)
{
    closeString();
    m_out.text("/Span<</ActualText(\xfe\xff");
    char *at = m_out.room(size_t(letters.size()) * 4);
    for (const QChar c : letters) {
        at = ContentStream::putStringByte(at, c.unicode() >> 8);
        at = ContentStream::putStringByte(at, c.unicode() & 0xff);
    }
    m_out.commit(at);
    m_out.text(")>>BDC\n");
}

void PageContent::showGlyph(const TextStyle &style, const FaceCodes::Placed &glyph, double x, double y)
{
    if (std::abs(x - m_penX) > kSamePlace || std::llround(y) != m_y || glyph.code.font() != m_font || style.size != m_size)
        closeString();
    char *at = m_out.room(kMostPerGlyph);
    if (!m_isStringOpen) {
        at = putMove(at, std::llround(x), std::llround(y));
        m_penX = double(m_x);
        if (glyph.code.font() != m_font || style.size != m_size)
            at = putFont(at, glyph.code.font(), style.size);
        *at++ = '(';
        m_isStringOpen = true;
    }
    m_out.commit(ContentStream::putStringByte(at, glyph.code.code()));
}

void PageContent::closeString()
{
    if (m_isStringOpen)
        m_out.text(")Tj\n");
    m_isStringOpen = false;
}

char *PageContent::putMove(char *at, qint64 x, qint64 y)
{
    at = ContentStream::putNumber(at, x - m_x);
    *at++ = ' ';
    at = ContentStream::putNumber(at, y - m_y);
    m_x = x;
    m_y = y;
    return put(at, " Td");
}

char *PageContent::putFont(char *at, quint32 font, Twips size)
{
    m_font = font;
    m_size = size;
    at = put(at, "/F");
    at = std::to_chars(at, at + 10, font + 1).ptr;
    *at++ = ' ';
    at = ContentStream::putNumber(at, hundredthsOf(size.count()));
    return put(at, " Tf");
}

void PageContent::setColour(QRgb colour)
{
    const QRgb opaque = colour | 0xff000000;
    if (opaque == m_colour)
        return;
    m_colour = opaque;
    m_out.fillColour(opaque);
}

} // namespace corvane

#include "platform/composer/page_composer.h"

#include "platform/composer/composer_metrics.h"

#include <algorithm>
#include <cmath>

namespace corvane {

namespace {

constexpr Twips kNarrowMargin {720};
constexpr Twips kShortSide {12240};
constexpr Twips kLongSide {15840};
constexpr Twips kColumnGap {360};
constexpr Twips kLeastTextWidth {720};
constexpr QRgb kQuietInk = 0xff6b7480;
constexpr size_t kRunsPerPage = 512;
constexpr size_t kPagesNamed = 5;

/// The shaper sets glyph 0, a box, for a character that no font has.
template<typename Pieces>
int boxesIn(const Pieces &pieces)
{
    qsizetype count = 0;
    for (const auto &piece : pieces)
        count += std::ranges::count(piece.glyphs, 0u);
    return int(count);
}

/// "page 2", "pages 2 and 5", "pages 1, 2, 3, 4, 5 and 12 more".
QString pageList(const QStringList &pages)
{
    if (pages.size() == 1)
        return QString(u"page " + pages.front());
    const bool isLong = size_t(pages.size()) > kPagesNamed;
    const QStringList named = isLong ? pages.first(kPagesNamed) : pages.first(pages.size() - 1);
    const QString last = isLong ? QStringLiteral("%1 more").arg(pages.size() - named.size()) : pages.back();
    return QString(u"pages " + named.join(QStringLiteral(", ")) + u" and " + last);
}

} // namespace

PageComposer::PageComposer()
{
    reset();
}

void PageComposer::reset()
{
    m_document.reset();
    m_orientation = Orientation::Portrait;
    m_fontName = QStringLiteral("Arial");
    m_fontSize = 10;
    setHeaderFont(m_fontName, m_fontSize);
    m_bold = false;
    m_border = TableBorder::None;
    m_columns = 1;
    m_leftIndent = {};
    m_widthNeeded = {};
    m_header.clear();
    m_footer.clear();
    m_runningHeading.clear();
    m_formats.clear();
    m_fonts.takeSubstitutions();
    m_used[0].reset();
    m_used[1].reset();
}

void PageComposer::setFontName(const QString &name)
{
    m_fontName = name;
    m_used[0].reset();
    m_used[1].reset();
}

void PageComposer::setFontSize(double points)
{
    if (points == 0)
        return;
    if (!(points >= kSmallestFont && points <= kLargestFont))
        throw ComposeError(QStringLiteral("The font size %1 is not between 1 and 144 points.").arg(points));
    m_fontSize = points;
    m_used[0].reset();
    m_used[1].reset();
}

void PageComposer::setHeaderFont(const QString &name, double points)
{
    m_headerFontName = name;
    m_headerFontSize = points;
}

void PageComposer::setBold(bool bold)
{
    m_bold = bold;
    m_used[int(Weight::Current)].reset();
}

void PageComposer::setPageColumns(int columns)
{
    const Twips content = m_document->paperWidth - m_document->leftMargin - m_document->rightMargin;
    const int most = (content + kColumnGap).count() / (kLeastTextWidth + kColumnGap).count();
    if (columns > most) {
        m_document->notes += QStringLiteral("The page has room for %1 newspaper columns, not for %2: %1 were used.").arg(most).arg(columns);
    }
    m_columns = std::clamp(columns, 1, most);
    m_column = 0;
    m_columnTop = m_contentTop = m_y;
    m_formats.clear();
}

void PageComposer::setLeftIndent(double twips)
{
    m_leftIndent = Twips::rounded(std::clamp(twips, 0.0, double(kLongSide.count())));
}

Twips PageComposer::widestContent(Orientation orientation)
{
    return (orientation == Orientation::Portrait ? kShortSide : kLongSide) - kNarrowMargin * 2;
}

Twips PageComposer::widthOfColumns(Twips tableWidth, int columns)
{
    return tableWidth * columns + kColumnGap * (columns - 1);
}

void PageComposer::startDocument(DocumentInfo info)
{
    m_document = std::make_shared<Document>();
    m_boxes.clear();
    m_document->info = std::move(info);
    const bool landscape = m_orientation == Orientation::Landscape;
    m_document->paperWidth = landscape ? kLongSide : kShortSide;
    m_document->paperHeight = landscape ? kShortSide : kLongSide;
    const Twips side = std::clamp((m_document->paperWidth - m_widthNeeded) / 2, kNarrowMargin, kMargin);
    m_document->leftMargin = m_document->rightMargin = side;
    m_formats.clear();
    m_used[0].reset();
    m_used[1].reset();
    beginPage();
}

DocumentPtr PageComposer::endDocument()
{
    return finish(true);
}

DocumentPtr PageComposer::abandonDocument()
{
    return finish(false);
}

DocumentPtr PageComposer::finish(bool whole)
{
    if (!m_document)
        return nullptr;
    packPage();
    m_document->header = furniture(m_header);
    m_document->footer = furniture(m_footer);
    m_document->notes += m_fonts.takeSubstitutions();
    noteMissingGlyphs();
    m_document->isWhole = whole;
    return std::exchange(m_document, nullptr);
}

Furniture PageComposer::furniture(const QString &parts)
{
    const FontFacePtr face = m_fonts.face(m_headerFontName, false);
    const auto styled = [&](QRgb colour) {
        return styleIndex(*m_document, {faceIndex(*m_document, face), Twips::fromPoints(m_headerFontSize), colour});
    };
    const QStringList texts = parts.split(u'|');
    // Header and footer are laid out again for each page; every face that they need is listed here.
    for (const Line &line : m_breaker.breakLines(parts, *face, Twips::fromPoints(m_headerFontSize), m_document->paperWidth)) {
        for (const ShapedPiece &piece : line.pieces)
            m_faceIndex(piece.face);
        if (const int boxes = boxesIn(line.pieces); boxes > 0)
            m_boxes.push_back({0, boxes});
    }
    return {texts.value(0), texts.value(1), texts.mid(2).join(u'|'), styled(kInk), styled(kQuietInk)};
}

void PageComposer::writeParagraph(QStringView text)
{
    const UsedFont &used = font(Weight::Current);
    const Twips indent = std::min(m_leftIndent, columnWidth() - kLeastTextWidth);
    const Twips width = columnWidth() - indent;
    const std::vector<Line> lines = m_breaker.breakLines(text, *used.face, fontTwips(), width);
    size_t done = 0;
    while (done < lines.size()) {
        if (m_y + used.lineHeight > bottomLimit() && !isAtColumnTop())
            breakColumn();
        const auto room = size_t(std::max((bottomLimit() - m_y).count() / used.lineHeight.count(), 1));
        const size_t count = std::min(room, lines.size() - done);
        const Twips height = used.lineHeight * qint32(count);
        openBlock(BlockKind::Paragraph, 1, height, done > 0);
        placeLines(page(), text, std::span(lines).subspan(done, count),
            {columnLeft() + indent, width, m_y + used.ascent, used.lineHeight, 0, used.style, 0}, m_faceIndex);
        m_y += height;
        done += count;
    }
}

void PageComposer::newPage()
{
    beginPage();
}

void PageComposer::addOutlineEntry(const QString &title)
{
    m_document->outline.push_back({title, m_document->pageCount() - 1, m_y, 0});
}

int PageComposer::pageCount() const
{
    return m_document ? m_document->pageCount() : 0;
}

const PageComposer::UsedFont &PageComposer::font(Weight weight)
{
    auto &used = m_used[int(weight)];
    if (!used) {
        const FontFacePtr face = m_fonts.face(m_fontName, m_bold || weight == Weight::Bold);
        const double scale = fontTwips().count() / double(face->unitsPerEm());
        used = UsedFont {face, styleIndex(*m_document, {faceIndex(*m_document, face), fontTwips(), kInk}),
            Twips::rounded(face->ascent() * scale), Twips::rounded((face->ascent() + face->descent()) * scale)};
    }
    return *used;
}

Twips PageComposer::columnWidth() const
{
    const Twips content = m_document->paperWidth - m_document->leftMargin - m_document->rightMargin;
    return (content - kColumnGap * (m_columns - 1)) / m_columns;
}

Twips PageComposer::columnLeft() const
{
    return m_document->leftMargin + (columnWidth() + kColumnGap) * m_column;
}

Twips PageComposer::bottomLimit() const
{
    return m_document->paperHeight - kMargin;
}

void PageComposer::beginPage()
{
    if (!m_document->pages.empty())
        packPage();
    m_document->pages.emplace_back().runs.reserve(kRunsPerPage);
    m_column = 0;
    m_y = m_columnTop = m_contentTop = kMargin;
}

void PageComposer::packPage()
{
    Page &last = page();
    last.text.squeeze();
    last.runs.shrink_to_fit();
    last.blocks.shrink_to_fit();
    last.rects.shrink_to_fit();
    if (const int boxes = boxesIn(last.shaped); boxes > 0)
        m_boxes.push_back({pageCount(), boxes});
}

void PageComposer::noteMissingGlyphs()
{
    int count = 0;
    QStringList pages;
    bool isInFurniture = false;
    for (const Boxes &boxes : m_boxes) {
        count += boxes.count;
        if (boxes.page > 0)
            pages += QString::number(boxes.page);
        isInFurniture = isInFurniture || boxes.page == 0;
    }
    if (count == 0)
        return;
    QStringList places;
    if (!pages.isEmpty())
        places += pageList(pages);
    if (isInFurniture)
        places += QStringLiteral("page header or footer");
    m_document->notes += QString((count == 1 ? QStringLiteral("1 character has no glyph in any font and shows as a box, ")
                                             : QStringLiteral("%1 characters have no glyph in any font and show as boxes, ").arg(count))
        + places.join(QStringLiteral("; ")) + u'.');
}

void PageComposer::breakColumn()
{
    if (m_column + 1 < m_columns) {
        ++m_column;
        m_y = m_contentTop = m_columnTop;
    } else {
        beginPage();
    }
    if (m_runningHeading.isEmpty() || m_drawingHeading)
        return;
    m_drawingHeading = true;
    drawHeading(m_runningHeading, m_runningFormat, kNoShade, Weight::Bold, TableBorder::AboveAndBelow);
    m_drawingHeading = false;
    // A heading that fills the column by itself must not keep the rows from ever being placed.
    m_contentTop = m_y;
}

} // namespace corvane

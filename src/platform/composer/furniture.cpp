#include "platform/composer/line_breaker.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace corvane {

namespace {

constexpr Twips kFirstBaseline {720}; ///< from the paper's edge
constexpr Twips kUnprintable {360}; ///< at the paper's edge; large letters keep off it
constexpr Twips kRuleFromEdge {1080};
constexpr Twips kBand {1440}; ///< from the paper's edge to where the body may begin
constexpr Twips kRuleThickness {10};
constexpr Twips kRuleGap {60}; ///< between the rule and letters that come near it
constexpr Twips kPartGap {200}; ///< between parts of one line
constexpr QRgb kRuleColour = 0xffc8c8c8;
constexpr double kShrink = 0.9;
constexpr Twips kEndless {1 << 24}; ///< wider than any line

enum class Edge { Top, Bottom };

/// One of the three parts on its way onto the page.
struct Part {
    QString text;
    quint16 style = 0;
    TextStyle look;
    std::vector<Line> lines;
};

/// Header or footer on its way onto one page.
class FurnitureLayout
{
public:
    FurnitureLayout(const Document &document, const Furniture &furniture, int pageIndex)
        : m_document(document)
        , m_left(document.leftMargin.count())
        , m_width(std::max((document.paperWidth - document.leftMargin - document.rightMargin).count(), 1))
    {
        m_fonts.adopt(document.faces);
        const QString number = QString::number(pageIndex + 1);
        const std::array texts {&furniture.left, &furniture.centre, &furniture.right};
        for (size_t i = 0; i < m_parts.size(); ++i) {
            m_parts[i].text = *texts[i];
            m_parts[i].text.replace(QStringLiteral("%d"), number);
            m_parts[i].style = i == 1 ? furniture.style : furniture.quietStyle;
        }
        double scale = 1;
        while (!fit(scale))
            scale *= kShrink;
    }

    void place(Page &page, Edge edge);

private:
    bool fit(double scale);
    bool fitsOnOneLine() const;
    Twips shareOf(size_t part) const;
    double lineHeight(const Part &part) const;
    double inTwips(const Part &part, int units) const
    {
        return double(units) * part.look.size.count() / face(part).unitsPerEm();
    }
    const FontFace &face(const Part &part) const { return *m_document.faces[part.look.face]; }
    double edgeToBaseline() const { return std::max<double>(kFirstBaseline.count(), kUnprintable.count() + m_ascent); }
    Twips depth() const;
    void placePart(Page &page, const Part &part, size_t column, Edge edge);

    const Document &m_document;
    FontLibrary m_fonts;
    LineBreaker m_breaker {m_fonts};
    qint32 m_left;
    qint32 m_width;
    std::array<Part, 3> m_parts;
    double m_ascent = 0; ///< the highest and the lowest letters' of the parts, twips
    double m_descent = 0;
};

/// Lays the parts out in letters of `scale` of their size. False when the band has no room for them;
/// letters of one twip always count as fitting.
bool FurnitureLayout::fit(double scale)
{
    bool isSmallest = true;
    m_ascent = m_descent = 0;
    for (Part &part : m_parts) {
        part.look = m_document.styles[part.style];
        part.look.size = Twips(std::max(Twips::rounded(part.look.size.count() * scale).count(), 1));
        isSmallest = isSmallest && part.look.size.count() == 1;
        if (part.text.isEmpty())
            continue;
        part.lines = m_breaker.breakLines(part.text, face(part), part.look.size, kEndless);
        m_ascent = std::max(m_ascent, inTwips(part, face(part).ascent()));
        m_descent = std::max(m_descent, inTwips(part, face(part).descent()));
    }
    if (!fitsOnOneLine()) {
        for (size_t i = 0; i < m_parts.size(); ++i) {
            if (!m_parts[i].text.isEmpty())
                m_parts[i].lines = m_breaker.breakLines(m_parts[i].text, face(m_parts[i]), m_parts[i].look.size, shareOf(i));
        }
    }
    return isSmallest || depth() + kRuleGap + kRuleThickness <= kBand;
}

bool FurnitureLayout::fitsOnOneLine() const
{
    std::array<double, 3> widths {};
    for (size_t i = 0; i < m_parts.size(); ++i) {
        for (const Line &line : m_parts[i].lines)
            widths[i] = std::max(widths[i], line.width);
    }
    const auto [left, centre, right] = widths;
    const double beside = centre > 0 ? (m_width - centre) / 2 - kPartGap.count() : m_width;
    const double between = left > 0 && right > 0 ? left + right + kPartGap.count() : left + right;
    return centre <= m_width && left <= beside && right <= beside && between <= m_width;
}

/// The width that a part may fill: all of it alone, halves beside one another, thirds around a centre.
Twips FurnitureLayout::shareOf(size_t part) const
{
    size_t others = 0;
    for (size_t i = 0; i < m_parts.size(); ++i)
        others += i != part && !m_parts[i].text.isEmpty() ? 1 : 0;
    if (others == 0)
        return Twips(m_width);
    const int shares = m_parts[1].text.isEmpty() ? 2 : 3;
    return std::max((Twips(m_width) - kPartGap * (shares - 1)) / shares, Twips(1));
}

double FurnitureLayout::lineHeight(const Part &part) const
{
    return inTwips(part, face(part).ascent() + face(part).descent() + face(part).lineGap());
}

/// How far the letters reach from the paper's edge, at least to where the rule stands by itself.
Twips FurnitureLayout::depth() const
{
    double depth = (kRuleFromEdge - kRuleGap).count();
    for (const Part &part : m_parts) {
        if (!part.lines.empty())
            depth = std::max(depth,
                edgeToBaseline() + (double(part.lines.size()) - 1) * lineHeight(part) + m_descent);
    }
    return Twips(qint32(std::ceil(depth)));
}

void FurnitureLayout::place(Page &page, Edge edge)
{
    for (size_t column = 0; column < m_parts.size(); ++column) {
        if (!m_parts[column].lines.empty())
            placePart(page, m_parts[column], column, edge);
    }
    const Twips rule = depth() + kRuleGap;
    const Twips y = edge == Edge::Top ? rule : m_document.paperHeight - rule - kRuleThickness;
    page.rects.push_back({m_left, y.count(), m_width, kRuleThickness.count(), kRuleColour});
}

void FurnitureLayout::placePart(Page &page, const Part &part, size_t column, Edge edge)
{
    quint16 style = part.style;
    if (part.look != m_document.styles[part.style]) {
        style = quint16(m_document.styles.size() + page.ownStyles.size());
        page.ownStyles.push_back(part.look);
    }
    // A footer is the header's mirror: its letters keep the same distance from the paper's edge.
    const double first = edge == Edge::Top
        ? edgeToBaseline()
        : m_document.paperHeight.count() - edgeToBaseline() + m_ascent - m_descent
            - (double(part.lines.size()) - 1) * lineHeight(part);
    const auto faceIndex = [this](const FontFacePtr &wanted) {
        const auto known = std::ranges::find(m_document.faces, wanted);
        return quint16(known == m_document.faces.end() ? 0 : known - m_document.faces.begin());
    };
    placeLines(page, part.text, part.lines,
        {Twips(m_left), Twips(m_width), Twips::rounded(first), Twips::rounded(lineHeight(part)), int(column), style, quint16(column)},
        faceIndex);
}

void placeFurniture(Page &page, const Document &document, const Furniture &furniture, int pageIndex, Edge edge)
{
    Block block;
    block.kind = BlockKind::Row;
    block.columnCount = 3;
    block.firstRun = quint32(page.runs.size());
    if (!furniture.isEmpty())
        FurnitureLayout(document, furniture, pageIndex).place(page, edge);
    block.bottom = edge == Edge::Top ? kBand.count() : document.paperHeight.count();
    block.top = block.bottom - kBand.count();
    page.blocks.push_back(block);
}

} // namespace

Page pageFurniture(const Document &document, int pageIndex)
{
    Page page;
    placeFurniture(page, document, document.header, pageIndex, Edge::Top);
    placeFurniture(page, document, document.footer, pageIndex, Edge::Bottom);
    return page;
}

} // namespace corvane

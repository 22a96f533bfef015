#include "platform/composer/font_face.h"

#include "platform/composer/shipped_fonts.h"

#include <QtGui/QFont>
#include <QtGui/QFontDatabase>

#include <cmath>

namespace corvane {

namespace {

QRawFont atOnePixelPerUnit(QRawFont font)
{
    font.setPixelSize(font.unitsPerEm());
    return font;
}

/// The free families with the same widths as the ones that definitions usually name.
QString sameWidthFamily(const QString &family)
{
    static const QHash<QString, QString> known {
        {QStringLiteral("arial"), QStringLiteral("Liberation Sans")},
        {QStringLiteral("helvetica"), QStringLiteral("Liberation Sans")},
        {QStringLiteral("times new roman"), QStringLiteral("Liberation Serif")},
        {QStringLiteral("times"), QStringLiteral("Liberation Serif")},
        {QStringLiteral("courier new"), QStringLiteral("Liberation Mono")},
        {QStringLiteral("courier"), QStringLiteral("Liberation Mono")},
    };
    const QString same = known.value(family.toLower());
    return !same.isEmpty() && QFontDatabase::hasFamily(same) ? same : family;
}

bool isPlain(char16_t c)
{
    return c >= 0x20 && !(c >= 0x7f && c < 0xa0) && QChar(c).category() != QChar::Mark_NonSpacing
        && QChar(c).direction() != QChar::DirR && QChar(c).direction() != QChar::DirAL;
}

} // namespace

bool isSameFont(const QRawFont &a, const QRawFont &b)
{
    return a.familyName() == b.familyName() && a.styleName() == b.styleName() && a.weight() == b.weight()
        && a.style() == b.style();
}

FontFace::FontFace(const QRawFont &font)
    : m_raw(atOnePixelPerUnit(font))
    , m_unitsPerEm(int(m_raw.unitsPerEm()))
    , m_ascent(int(std::lround(m_raw.ascent())))
    , m_descent(int(std::lround(m_raw.descent())))
    , m_lineGap(int(std::lround(m_raw.leading())))
{
    fillPlain(m_latin, 0);
    fillPlain(m_punctuation, kPunctuationBegin);
}

QString FontFace::styleName() const
{
    const bool isBold = m_raw.weight() >= QFont::DemiBold;
    if (m_raw.style() == QFont::StyleNormal)
        return isBold ? QStringLiteral("Bold") : QStringLiteral("Regular");
    return isBold ? QStringLiteral("Bold Italic") : QStringLiteral("Italic");
}

void FontFace::fillPlain(std::span<Glyph> table, char16_t first)
{
    std::vector<QChar> characters(table.size());
    for (size_t i = 0; i < table.size(); ++i) {
        const auto c = char16_t(first + i);
        characters[i] = QChar(isPlain(c) ? c : u' ');
    }
    std::vector<quint32> glyphs(table.size());
    int count = int(glyphs.size());
    if (!m_raw.glyphIndexesForChars(characters.data(), count, glyphs.data(), &count))
        return;
    std::vector<QPointF> advances(glyphs.size());
    m_raw.advancesForGlyphIndexes(glyphs.data(), advances.data(), int(glyphs.size()));
    for (size_t i = 0; i < table.size(); ++i) {
        if (isPlain(char16_t(first + i)) && glyphs[i] != 0)
            table[i] = {quint16(glyphs[i]), quint16(std::lround(advances[i].x()))};
    }
}

std::optional<qint64> FontFace::plainWidth(QStringView text) const
{
    qint64 width = 0;
    for (const QChar c : text) {
        const Glyph glyph = plainGlyph(c.unicode());
        if (glyph.index == 0)
            return std::nullopt;
        width += glyph.advance;
    }
    return width;
}

double FontFace::advance(quint32 glyph) const
{
    QPointF advance;
    m_raw.advancesForGlyphIndexes(&glyph, &advance, 1);
    return advance.x();
}

FontFacePtr FontLibrary::face(const QString &family, bool bold, bool italic)
{
    FontFacePtr &slot = m_byName[{family, (bold ? 1 : 0) + (italic ? 2 : 0)}];
    if (slot)
        return slot;
    static const bool isReady = (loadShippedFonts(), true);
    Q_UNUSED(isReady);
    QFont font(sameWidthFamily(family));
    font.setBold(bold);
    font.setItalic(italic);
    font.setHintingPreference(QFont::PreferNoHinting);
    font.setPixelSize(100);
    if (!QFontDatabase::hasFamily(font.family()) && !m_substituted.contains(family)) {
        m_substituted += family;
        const QString used = QRawFont::fromFont(font).familyName();
        m_substitutions += QStringLiteral("The font \"%1\" is not installed; \"%2\" is used instead.").arg(family, used);
    }
    slot = std::make_shared<const FontFace>(QRawFont::fromFont(font));
    return slot;
}

FontFacePtr FontLibrary::face(const QRawFont &font)
{
    for (const FontFacePtr &known : m_byName) {
        if (known && isSameFont(known->rawFont(), font))
            return known;
    }
    for (const FontFacePtr &known : m_fallbacks) {
        if (isSameFont(known->rawFont(), font))
            return known;
    }
    m_fallbacks.push_back(std::make_shared<const FontFace>(font));
    return m_fallbacks.back();
}

void FontLibrary::adopt(const std::vector<FontFacePtr> &faces)
{
    m_fallbacks.insert(m_fallbacks.end(), faces.begin(), faces.end());
}

QStringList FontLibrary::takeSubstitutions()
{
    return std::exchange(m_substitutions, {});
}

} // namespace corvane

#pragma once

#include <QtCore/QHash>
#include <QtCore/QStringList>
#include <QtGui/QRawFont>

#include <array>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace corvane {

/// One font as the system resolved it, with unhinted widths in font units, so that every machine
/// breaks lines alike. Needs a QGuiApplication.
class FontFace
{
public:
    explicit FontFace(const QRawFont &font);

    QString family() const { return m_raw.familyName(); }
    /// "Regular", "Bold", "Italic" or "Bold Italic", by weight and slant: not every system tells a font's own name for it.
    QString styleName() const;
    /// The font at one pixel per font unit, without hinting.
    const QRawFont &rawFont() const { return m_raw; }

    int unitsPerEm() const { return m_unitsPerEm; }
    int ascent() const { return m_ascent; }    ///< above the baseline, font units
    int descent() const { return m_descent; }  ///< below the baseline, positive, font units
    int lineGap() const { return m_lineGap; }  ///< between lines, font units

    struct Glyph {
        quint16 index = 0;   ///< 0: the font has no such glyph
        quint16 advance = 0; ///< font units
    };

    /// The glyph of a character that needs no shaping: one glyph, left to right, drawn where it stands.
    /// Index 0 for a character that the font lacks or that must go through the shaper.
    Glyph plainGlyph(char16_t c) const
    {
        if (c < kLatinEnd)
            return m_latin[c];
        if (c >= kPunctuationBegin && c < kPunctuationEnd)
            return m_punctuation[c - kPunctuationBegin];
        return {};
    }

    /// Sum of the plain advances in font units; empty when a character needs the shaper.
    std::optional<qint64> plainWidth(QStringView text) const;

    /// Advance of any glyph, font units.
    double advance(quint32 glyph) const;

private:
    static constexpr char16_t kLatinEnd = 0x250;
    static constexpr char16_t kPunctuationBegin = 0x2010;
    static constexpr char16_t kPunctuationEnd = 0x20d0;

    void fillPlain(std::span<Glyph> table, char16_t first);

    QRawFont m_raw;
    int m_unitsPerEm = 0;
    int m_ascent = 0;
    int m_descent = 0;
    int m_lineGap = 0;
    std::array<Glyph, kLatinEnd> m_latin {};
    std::array<Glyph, kPunctuationEnd - kPunctuationBegin> m_punctuation {};
};

using FontFacePtr = std::shared_ptr<const FontFace>;

/// Whether two are the same font, whatever their sizes: fonts of Qt only equal themselves.
bool isSameFont(const QRawFont &a, const QRawFont &b);

/// Finds and keeps faces. Arial, Times New Roman and Courier New stand for the Liberation fonts,
/// which have the same widths; any other family that is missing is substituted and remembered.
class FontLibrary
{
public:
    FontFacePtr face(const QString &family, bool bold, bool italic = false);
    /// The face of a font that the shaper fell back to.
    FontFacePtr face(const QRawFont &font);

    /// Faces made elsewhere, to be found again when the shaper falls back to their fonts.
    void adopt(const std::vector<FontFacePtr> &faces);

    /// One sentence for each family that was substituted since the last call.
    QStringList takeSubstitutions();

private:
    QHash<std::pair<QString, int>, FontFacePtr> m_byName; ///< the number tells bold (1) and italic (2)
    std::vector<FontFacePtr> m_fallbacks;
    QStringList m_substitutions;
    QStringList m_substituted; ///< families that a sentence was made for
};

} // namespace corvane

#pragma once

#include "platform/composer/font_face.h"

#include <map>
#include <memory>
#include <optional>
#include <unordered_map>

struct hb_face_t;
struct hb_font_t;

namespace corvane {

/// What a font descriptor (ISO 32000-1, 9.8) says; lengths in thousandths of the font size.
struct FontMetrics {
    QByteArray postScriptName;
    std::array<double, 4> box {}; ///< left, bottom, right, top
    double capHeight = 0;
    double italicAngle = 0; ///< degrees, negative leans right
    int weight = 400;
    bool isFixedPitch = false;
};

/// A font file with the glyphs asked for and .notdef.
struct FontSubset {
    QByteArray file;
    std::map<quint32, quint32> placed; ///< number in the file by number in the font
};

/// The tables behind a face: names, metrics, letters of its glyphs, subsets of it.
class FontProgram
{
public:
    explicit FontProgram(FontFacePtr face);

    const FontFace &face() const { return *m_face; }
    FontMetrics metrics() const;
    bool hasCffOutlines() const;

    /// The glyph of a character on its own; 0 when the font lacks it.
    quint32 nominalGlyph(char32_t character) const;
    /// The letters that a glyph of the font stands for on its own; empty when no character maps to it.
    /// A presentation form counts as the letters it presents.
    QString glyphText(quint32 glyph);

    /// Glyphs must be sorted. Empty when the font has no outlines that a PDF can embed.
    std::optional<FontSubset> subset(std::span<const quint32> glyphs) const;

private:
    struct Destroy {
        void operator()(hb_face_t *face) const;
        void operator()(hb_font_t *font) const;
    };

    void readCharacters();

    FontFacePtr m_face;
    std::unique_ptr<hb_face_t, Destroy> m_tables;
    std::unique_ptr<hb_font_t, Destroy> m_font;
    bool m_knowsCharacters = false;
    std::unordered_map<quint32, char32_t> m_characters; ///< by glyph
};

} // namespace corvane

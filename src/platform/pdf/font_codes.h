#pragma once

#include "platform/pdf/font_program.h"

namespace corvane {

/// What a one-byte code of a PDF font shows.
struct CodedGlyph {
    quint32 glyph = 0;
    QString text; ///< for copy and search; empty when only the words around it know
    bool isUsed = false;
};

/// One PDF font: up to 255 glyphs of a face.
struct CodedFont {
    quint16 face = 0; ///< index into Document::faces
    std::array<CodedGlyph, 256> glyphs;
};

/// A PDF font (index into FontCodes::fonts) and a code of it.
struct FontCode {
    quint32 packed = 0;

    FontCode() = default;
    FontCode(size_t font, unsigned char code)
        : packed(quint32(font << 8 | code))
    {
    }

    bool isValid() const { return packed != 0; } ///< code 0 is never given out
    quint32 font() const { return packed >> 8; }
    unsigned char code() const { return packed & 0xff; }
};

/// Hands out codes for the characters and glyphs of one face as they turn up. A character of Latin-1
/// has its own code where it can, so that contents stay readable and compress well.
class FaceCodes
{
public:
    FaceCodes(FontFacePtr face, quint16 index, std::vector<CodedFont> &fonts);

    FontFace const &face() const { return m_program.face(); }
    FontProgram &program() { return m_program; }

    /// The code of a character drawn with its plain glyph. A control character counts as a blank.
    FontCode character(char16_t c)
    {
        const FontCode known = m_characters[c];
        return known.isValid() ? known : codeCharacter(c);
    }

    struct Placed {
        FontCode code;
        float advance = 0; ///< font units
    };
    /// The code of a glyph that the shaper chose for these letters; for others it has another.
    const Placed &glyph(quint32 glyph, QStringView letters);

private:
    FontCode codeCharacter(char16_t c);
    Placed place(quint32 glyph, QStringView letters);
    FontCode nextCode(char16_t preferred);

    FontProgram m_program;
    quint16 m_index;
    std::vector<CodedFont> &m_fonts;
    size_t m_lastFont = 0;
    std::vector<FontCode> m_characters;
    std::unordered_map<quint64, Placed> m_glyphs; ///< by glyph and up to two letters
    QHash<std::pair<quint32, QString>, Placed> m_ligatures;
};

/// The PDF fonts of a document, in the order in which its pages need them.
class FontCodes
{
public:
    explicit FontCodes(const std::vector<FontFacePtr> &faces);
    Q_DISABLE_COPY_MOVE(FontCodes)

    FaceCodes &face(quint16 index);
    const std::vector<CodedFont> &fonts() const { return m_fonts; }

private:
    const std::vector<FontFacePtr> &m_sources;
    std::vector<std::unique_ptr<FaceCodes>> m_faces;
    std::vector<CodedFont> m_fonts;
};

} // namespace corvane

#include "platform/pdf/font_codes.h"

namespace corvane {

namespace {

constexpr size_t kNoFont = size_t(-1);

/// Codes that only their own character may have: a blank, and what a string must escape.
constexpr bool isReserved(int code)
{
    return code == 0 || code == '\n' || code == '\r' || code == ' ' || code == '(' || code == ')' || code == '\\';
}

/// Free codes in the order they are given out: those of letters that texts rarely hold come first.
constexpr auto kFreeCodes = [] {
    std::array<unsigned char, 256> codes {};
    size_t count = 0;
    const auto append = [&](int first, int last) {
        for (int code = first; code <= last; ++code) {
            if (!isReserved(code))
                codes[count++] = static_cast<unsigned char>(code);
        }
    };
    append(0x7f, 0x9f);
    append(0x01, 0x1f);
    append(0xa0, 0xff);
    append(0x21, 0x7e);
    return codes; // filled up with 0
}();

} // namespace

FaceCodes::FaceCodes(FontFacePtr face, quint16 index, std::vector<CodedFont> &fonts)
    : m_program(std::move(face))
    , m_index(index)
    , m_fonts(fonts)
    , m_lastFont(kNoFont)
    , m_characters(0x10000)
{
}

FontCode FaceCodes::codeCharacter(char16_t c)
{
    const char16_t shown = c < 0x20 ? u' ' : c;
    if (shown != c)
        return m_characters[c] = character(shown);
    const FontCode code = nextCode(c);
    m_fonts[code.font()].glyphs[code.code()] = {face().plainGlyph(c).index, QChar(c), true};
    return m_characters[c] = code;
}

const FaceCodes::Placed &FaceCodes::glyph(quint32 glyph, QStringView letters)
{
    if (letters.size() > 2) {
        Placed &placed = m_ligatures[{glyph, letters.toString()}];
        if (!placed.code.isValid())
            placed = place(glyph, letters);
        return placed;
    }
    quint64 key = glyph;
    for (const QChar c : letters)
        key = key << 16 | c.unicode();
    Placed &placed = m_glyphs[key << 2 | quint64(letters.size())];
    if (!placed.code.isValid())
        placed = place(glyph, letters);
    return placed;
}

FaceCodes::Placed FaceCodes::place(quint32 glyph, QStringView letters)
{
    const auto advance = float(face().advance(glyph));
    const char16_t letter = letters.size() == 1 ? letters[0].unicode() : u'\0';
    if (letter >= 0x20 && glyph != 0 && face().plainGlyph(letter).index == glyph)
        return {character(letter), advance};
    const FontCode code = nextCode(letter);
    m_fonts[code.font()].glyphs[code.code()] = {glyph, letters.toString(), true};
    return {code, advance};
}

FontCode FaceCodes::nextCode(char16_t preferred)
{
    if (m_lastFont != kNoFont) {
        const std::array<CodedGlyph, 256> &taken = m_fonts[m_lastFont].glyphs;
        const bool fits = preferred > 0 && preferred <= 0xff && preferred != u'\r' && preferred != u'\n';
        if (fits && !taken[preferred].isUsed)
            return {m_lastFont, static_cast<unsigned char>(preferred)};
        for (const unsigned char code : kFreeCodes) {
            if (code != 0 && !taken[code].isUsed)
                return {m_lastFont, code};
        }
    }
    m_lastFont = m_fonts.size();
    m_fonts.push_back({m_index, {}});
    return nextCode(preferred);
}

FontCodes::FontCodes(const std::vector<FontFacePtr> &faces)
    : m_sources(faces)
    , m_faces(faces.size())
{
}

FaceCodes &FontCodes::face(quint16 index)
{
    std::unique_ptr<FaceCodes> &codes = m_faces.at(index);
    if (!codes)
        codes = std::make_unique<FaceCodes>(m_sources[index], index, m_fonts);
    return *codes;
}

} // namespace corvane

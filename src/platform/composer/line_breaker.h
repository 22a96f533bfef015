#pragma once

#include "platform/composer/document.h"

#include <functional>
#include <vector>

namespace corvane {

/// A stretch of a line that the shaper set in one face. Positions in twips from the line's start.
struct ShapedPiece {
    FontFacePtr face;
    qsizetype begin = 0; ///< letters of the broken text
    qsizetype end = 0;
    std::vector<quint32> glyphs;
    std::vector<float> xOffsets;
    std::vector<float> yOffsets;
};

/// One line of a broken text: letters [begin, end) without the blank it was broken at.
struct Line {
    qsizetype begin = 0;
    qsizetype end = 0;
    double width = 0; ///< twips
    std::vector<ShapedPiece> pieces; ///< empty: plain glyphs of the face asked for
};

/// Breaks text into lines by unhinted widths. Latin text takes a table look-up per letter; anything
/// else goes through Qt's shaper, so that nothing is dropped.
class LineBreaker
{
public:
    explicit LineBreaker(FontLibrary &fonts)
        : m_fonts(fonts)
    {
    }

    /// Lines no wider than `width` unless a single letter is; at least one line, empty for empty text.
    /// A line feed ends a line. The result stays valid until the next call.
    const std::vector<Line> &breakLines(QStringView text, const FontFace &face, Twips size, Twips width);

private:
    bool breakPlain(QStringView text, const FontFace &face, double unitsPerTwip, qint64 limit);
    void breakShaped(QStringView text, const FontFace &face, Twips size, Twips width);
    void shapeParagraph(const QString &text, qsizetype offset, const FontFace &face, Twips size, Twips width);

    FontLibrary &m_fonts;
    std::vector<Line> m_lines;
};

/// Appends the letters of `lines` (one cell, or part of one) to the page as runs. `left` is where a
/// line starts when left-aligned within `width`; the first baseline is `baseline`, the next `lineHeight`
/// below.
struct LinePlacement {
    Twips left;
    Twips width;
    Twips baseline;
    Twips lineHeight;
    int alignment = 0; ///< 0 left, 1 centre, 2 right
    quint16 style = 0;
    quint16 column = 0;
};
using FaceIndex = std::function<quint16(const FontFacePtr &)>; ///< of a face in Document::faces
void placeLines(Page &page, QStringView text, std::span<const Line> lines, const LinePlacement &where, const FaceIndex &faceIndex);

/// Index of the face in the document's table, added when new.
quint16 faceIndex(Document &document, const FontFacePtr &face);
quint16 styleIndex(Document &document, const TextStyle &style);

} // namespace corvane

#include "platform/composer/line_breaker.h"

#include <QtCore/QTextBoundaryFinder>
#include <QtGui/QGlyphRun>
#include <QtGui/QTextLayout>

#include <algorithm>
#include <cmath>
#include <optional>

namespace corvane {

namespace {

/// The shaper works at this size and is scaled, so that its rounding never shows.
constexpr double kShaperPixels = 1000.0;

bool isBlank(QChar c)
{
    return c == u' ' || c == u'\t';
}

bool isLineEnd(QChar c)
{
    return c == u'\n' || c == u'\r';
}

/// Position behind the line end at `at` ("\r\n" counts as one).
qsizetype behindLineEnd(QStringView text, qsizetype at)
{
    return text[at] == u'\r' && at + 1 < text.size() && text[at + 1] == u'\n' ? at + 2 : at + 1;
}

FontFace::Glyph glyphOf(const FontFace &face, QChar c)
{
    return face.plainGlyph(c.unicode() < 0x20 ? u' ' : c.unicode());
}

QFont fontOf(const FontFace &face)
{
    const QRawFont &raw = face.rawFont();
    QFont font;
    // The font that comes with the program goes before the system's own choice for letters that the face lacks.
    font.setFamilies({raw.familyName(), QStringLiteral("DejaVu Sans")});
    font.setWeight(QFont::Weight(raw.weight()));
    font.setStyle(raw.style());
    font.setHintingPreference(QFont::PreferNoHinting);
    font.setPixelSize(int(kShaperPixels));
    return font;
}

/// Whether two glyph runs may stand in one piece: the same font, set in the same direction.
bool belongTogether(const QGlyphRun &a, const QGlyphRun &b)
{
    return isSameFont(a.rawFont(), b.rawFont()) && a.isRightToLeft() == b.isRightToLeft();
}

/// Whether a letter takes its marks from another font.
bool isMixed(const QList<QGlyphRun> &runs)
{
    return std::ranges::any_of(runs, [&](const QGlyphRun &run) { return !belongTogether(run, runs.front()); });
}

/// Ends of the stretches of a line that one font serves in one direction, in letters of the shaped text.
/// A letter of several fonts is a stretch of its own.
std::vector<qsizetype> pieceEnds(const QTextLine &line, const QString &text)
{
    std::vector<qsizetype> ends;
    const qsizetype begin = line.textStart();
    const qsizetype end = begin + line.textLength();
    QTextBoundaryFinder graphemes(QTextBoundaryFinder::Grapheme, text);
    std::optional<QGlyphRun> current;
    bool wasApart = false;
    qsizetype at = begin;
    while (at < end) {
        graphemes.setPosition(at);
        const qsizetype next = std::clamp<qsizetype>(graphemes.toNextBoundary(), at + 1, end);
        const QList<QGlyphRun> runs = line.glyphRuns(int(at), int(next - at));
        if (!runs.isEmpty()) {
            const bool isApart = isMixed(runs);
            if (current && (isApart || wasApart || !belongTogether(*current, runs.front())))
                ends.push_back(at);
            wasApart = isApart;
            current = runs.front();
        }
        at = next;
    }
    ends.push_back(end);
    return ends;
}

} // namespace

const std::vector<Line> &LineBreaker::breakLines(QStringView text, const FontFace &face, Twips size, Twips width)
{
    m_lines.clear();
    const double unitsPerTwip = double(face.unitsPerEm()) / size.count();
    if (!breakPlain(text, face, unitsPerTwip, qint64(width.count() * unitsPerTwip))) {
        m_lines.clear();
        breakShaped(text, face, size, width);
    }
    return m_lines;
}

bool LineBreaker::breakPlain(QStringView text, const FontFace &face, double unitsPerTwip, qint64 limit)
{
    const qsizetype length = text.size();
    qsizetype begin = 0;
    qsizetype breakEnd = -1;  // where the line would end, blanks left out
    qsizetype breakNext = -1; // where the next would start
    qint64 width = 0;
    qint64 widthAtBreak = 0;
    const auto close = [&](qsizetype end, qint64 units, qsizetype next) {
        m_lines.push_back({begin, end, units / unitsPerTwip, {}});
        begin = next;
        breakEnd = -1;
        width = 0;
    };
    for (qsizetype at = 0; at < length; ++at) {
        const QChar c = text[at];
        if (isLineEnd(c)) {
            close(at, width, behindLineEnd(text, at));
            at = begin - 1;
            continue;
        }
        const FontFace::Glyph glyph = glyphOf(face, c);
        if (glyph.index == 0)
            return false;
        if (isBlank(c)) {
            if (breakNext != at || breakEnd < 0) {
                breakEnd = at;
                widthAtBreak = width;
            }
            breakNext = at + 1;
        } else if (width + glyph.advance > limit && at > begin) {
            const bool atBlank = breakEnd > begin;
            const qsizetype next = atBlank ? breakNext : at;
            close(atBlank ? breakEnd : at, atBlank ? widthAtBreak : width, next);
            at = next - 1;
            continue;
        }
        width += glyph.advance;
    }
    close(length, width, length);
    return true;
}

void LineBreaker::breakShaped(QStringView text, const FontFace &face, Twips size, Twips width)
{
    qsizetype begin = 0;
    while (begin <= text.size()) {
        qsizetype end = begin;
        while (end < text.size() && !isLineEnd(text[end]))
            ++end;
        shapeParagraph(text.sliced(begin, end - begin).toString(), begin, face, size, width);
        if (end == text.size())
            break;
        begin = behindLineEnd(text, end);
    }
}

void LineBreaker::shapeParagraph(const QString &text, qsizetype offset, const FontFace &face, Twips size, Twips width)
{
    QString clean = text;
    std::ranges::replace_if(clean, [](QChar c) { return c.unicode() < 0x20; }, QChar(u' '));
    const double twipsPerPixel = size.count() / kShaperPixels;
    QTextLayout layout(clean, fontOf(face));
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    option.setUseDesignMetrics(true);
    layout.setTextOption(option);
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine())
        line.setLineWidth(width.count() / twipsPerPixel);
    layout.endLayout();

    for (int i = 0; i < layout.lineCount(); ++i) {
        const QTextLine line = layout.lineAt(i);
        Line result {offset + line.textStart(), offset + line.textStart() + line.textLength(),
            line.naturalTextWidth() * twipsPerPixel, {}};
        while (result.end > result.begin && isBlank(clean[result.end - offset - 1]))
            --result.end;
        // An aligned right-to-left line stands at the right of its width; runs start at the line's left.
        const double left = line.naturalTextRect().left();
        const double baseline = line.y() + line.ascent();
        qsizetype begin = line.textStart();
        for (const qsizetype end : pieceEnds(line, clean)) {
            ShapedPiece piece {nullptr, offset + begin, std::min(offset + end, result.end), {}, {}, {}};
            for (const QGlyphRun &run : line.glyphRuns(int(begin), int(end - begin))) {
                const FontFacePtr used = m_fonts.face(run.rawFont());
                if (piece.face && piece.face != used) {
                    // Marks of another font take the last letters, one for each glyph.
                    ShapedPiece marks {nullptr, 0, piece.end, {}, {}, {}};
                    marks.begin = piece.end = std::max(piece.begin + 1, piece.end - run.glyphIndexes().size());
                    result.pieces.push_back(std::exchange(piece, std::move(marks)));
                }
                piece.face = used;
                const QList<quint32> glyphs = run.glyphIndexes();
                const QList<QPointF> positions = run.positions();
                for (qsizetype g = 0; g < glyphs.size(); ++g) {
                    piece.glyphs.push_back(glyphs[g]);
                    piece.xOffsets.push_back(float((positions[g].x() - left) * twipsPerPixel));
                    piece.yOffsets.push_back(float((positions[g].y() - baseline) * twipsPerPixel));
                }
            }
            if (piece.face)
                result.pieces.push_back(std::move(piece));
            begin = end;
        }
        m_lines.push_back(std::move(result));
    }
    if (layout.lineCount() == 0)
        m_lines.push_back({offset, offset, 0, {}});
}

void placeLines(Page &page, QStringView text, std::span<const Line> lines, const LinePlacement &where, const FaceIndex &faceIndex)
{
    if (lines.empty() || (lines.size() == 1 && lines[0].begin == lines[0].end))
        return;
    const qsizetype first = lines.front().begin;
    const auto base = page.text.size() - first;
    page.text.append(text.sliced(first, lines.back().end - first));
    Twips baseline = where.baseline;
    for (const Line &line : lines) {
        const double slack = where.width.count() - line.width;
        const double shift = where.alignment == 0 ? 0 : where.alignment == 1 ? slack / 2 : slack;
        TextRun run {where.left.count() + qint32(std::lround(std::max(shift, 0.0))), baseline.count(),
            quint32(base + line.begin), quint32(line.end - line.begin), 0, where.style, where.column};
        if (line.pieces.empty())
            page.runs.push_back(run);
        for (const ShapedPiece &piece : line.pieces) {
            run.textStart = quint32(base + std::min(piece.begin, piece.end));
            run.textLength = quint32(std::max<qsizetype>(piece.end - piece.begin, 0));
            page.shaped.push_back({faceIndex(piece.face), piece.glyphs, piece.xOffsets, piece.yOffsets});
            run.shaped = quint32(page.shaped.size());
            page.runs.push_back(run);
        }
        baseline += where.lineHeight;
    }
}

quint16 faceIndex(Document &document, const FontFacePtr &face)
{
    const auto known = std::ranges::find(document.faces, face);
    if (known != document.faces.end())
        return quint16(known - document.faces.begin());
    document.faces.push_back(face);
    return quint16(document.faces.size() - 1);
}

quint16 styleIndex(Document &document, const TextStyle &style)
{
    const auto known = std::ranges::find(document.styles, style);
    if (known != document.styles.end())
        return quint16(known - document.styles.begin());
    document.styles.push_back(style);
    return quint16(document.styles.size() - 1);
}

} // namespace corvane

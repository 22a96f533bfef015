#include "platform/pdf/glyph_clusters.h"

#include <limits>
#include <numeric>

namespace corvane {

namespace {

/// Letters that one glyph stands for at the most, unless the run has too few glyphs.
constexpr size_t kLongestLigature = 4;
/// Glyphs times letters beyond which a run is taken as one: nobody typesets that on a line.
constexpr size_t kMostCells = 4'000'000;

/// What it costs to take a glyph for so many letters that the font does not map to it.
constexpr quint32 unknownCost(size_t letters)
{
    return letters == 0 ? 3 : letters == 1 ? 2 : quint32(2 + letters);
}

class Alignment
{
public:
    Alignment(FontProgram &font, std::span<const quint32> glyphs, QStringView text)
        : m_font(font)
        , m_glyphs(glyphs)
        , m_text(text)
    {
        for (qsizetype at = 0; at < text.size(); ++at) {
            m_begins.push_back(at);
            const bool isPair = text[at].isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate();
            const char32_t c = isPair ? QChar::surrogateToUcs4(text[at], text[at + 1]) : text[at].unicode();
            m_nominal.push_back(font.nominalGlyph(c));
            at += isPair ? 1 : 0;
        }
        m_begins.push_back(text.size());
    }

    std::vector<GlyphCluster> clusters();

private:
    size_t letterCount() const { return m_begins.size() - 1; }
    bool isNominal(size_t glyph, size_t letter) const
    {
        return m_glyphs[glyph] != 0 && m_nominal[letter] == m_glyphs[glyph];
    }
    QStringView letters(size_t begin, size_t end) const
    {
        return m_text.sliced(m_begins[begin], m_begins[end] - m_begins[begin]);
    }
    bool isLetterByLetter();
    void readTexts();
    bool matchesInOrder();
    bool standsFor(size_t glyph, size_t letter, size_t count) const;
    void fill();
    bool isMarkOnLetter(qsizetype at) const;
    std::vector<GlyphCluster> traced() const;

    FontProgram &m_font;
    std::span<const quint32> m_glyphs;
    QStringView m_text;
    std::vector<qsizetype> m_begins; ///< where each character begins, and the end
    std::vector<quint32> m_nominal;   ///< by character: the glyph that the font maps it to
    std::vector<QString> m_glyphTexts;  ///< decomposed, as are the letters
    std::vector<QString> m_letterTexts;
    std::vector<size_t> m_ends; ///< by glyph: the letter behind the last one it takes
};

std::vector<GlyphCluster> Alignment::clusters()
{
    if (isLetterByLetter())
        return traced();
    if ((m_glyphs.size() + 1) * (letterCount() + 1) > kMostCells || letterCount() == 0)
        return {{0, m_glyphs.size(), 0, m_text.size()}};
    readTexts();
    if (!matchesInOrder())
        fill();
    return traced();
}

bool Alignment::isLetterByLetter()
{
    if (m_glyphs.size() != letterCount())
        return false;
    for (size_t i = 0; i < m_glyphs.size(); ++i) {
        if (!isNominal(i, i))
            return false;
    }
    m_ends.resize(m_glyphs.size());
    std::iota(m_ends.begin(), m_ends.end(), 1);
    return true;
}

void Alignment::readTexts()
{
    for (const quint32 glyph : m_glyphs)
        m_glyphTexts.push_back(m_font.glyphText(glyph).normalized(QString::NormalizationForm_D));
    for (size_t i = 0; i < letterCount(); ++i)
        m_letterTexts.push_back(letters(i, i + 1).toString().normalized(QString::NormalizationForm_D));
}

/// The usual case besides letter by letter: each glyph known to stand for the next letters.
bool Alignment::matchesInOrder()
{
    size_t letter = 0;
    m_ends.clear();
    for (size_t glyph = 0; glyph < m_glyphs.size(); ++glyph) {
        size_t count = 1;
        while (count <= kLongestLigature && letter + count <= letterCount() && !standsFor(glyph, letter, count))
            ++count;
        if (count > kLongestLigature || letter + count > letterCount())
            return false;
        letter += count;
        m_ends.push_back(letter);
    }
    return letter == letterCount();
}

bool Alignment::standsFor(size_t glyph, size_t letter, size_t count) const
{
    if (count == 1 && isNominal(glyph, letter))
        return true;
    QStringView rest = m_glyphTexts[glyph];
    if (rest.isEmpty())
        return false;
    for (size_t i = letter; i < letter + count; ++i) {
        if (!rest.startsWith(m_letterTexts[i]))
            return false;
        rest = rest.sliced(m_letterTexts[i].size());
    }
    return rest.isEmpty();
}

/// Least cost from the back: of glyphs [i, …) and letters [j, …), one row of costs at a time.
void Alignment::fill()
{
    const size_t width = letterCount() + 1;
    const size_t longest = letterCount() > kLongestLigature * m_glyphs.size() ? letterCount() : kLongestLigature;
    constexpr quint32 kImpossible = std::numeric_limits<quint32>::max() / 2;
    std::vector<quint32> costs(width, kImpossible);
    costs[letterCount()] = 0;
    std::vector<quint16> taken(m_glyphs.size() * width); // by glyph and letter: how many it takes at best
    for (size_t glyph = m_glyphs.size(); glyph-- > 0;) {
        std::vector<quint32> row(width, kImpossible);
        for (size_t letter = 0; letter < width; ++letter) {
            for (size_t count = 0; count <= std::min(longest, width - 1 - letter); ++count) {
                if (costs[letter + count] >= kImpossible)
                    continue;
                const bool isKnown = count > 0 && standsFor(glyph, letter, count);
                const quint32 cost = costs[letter + count] + (isKnown ? 0 : unknownCost(count));
                if (cost <= row[letter]) { // at the same cost the earlier glyph takes more
                    row[letter] = cost;
                    taken[glyph * width + letter] = quint16(count);
                }
            }
        }
        costs = std::move(row);
    }
    m_ends.clear();
    size_t letter = 0;
    for (size_t glyph = 0; glyph < m_glyphs.size(); ++glyph) {
        letter += taken[glyph * width + letter];
        m_ends.push_back(letter);
    }
}

/// Whether a mark stands here on a letter that is written from left to right.
bool Alignment::isMarkOnLetter(qsizetype at) const
{
    return at > 0 && m_text[at].category() == QChar::Mark_NonSpacing && m_text[at - 1].direction() == QChar::DirL;
}

/// A glyph without letters joins the cluster before it, as does a mark set apart from its letter; at
/// the beginning, it joins the one behind it.
std::vector<GlyphCluster> Alignment::traced() const
{
    std::vector<GlyphCluster> all;
    size_t letter = 0;
    for (size_t glyph = 0; glyph < m_glyphs.size(); ++glyph) {
        const size_t end = m_ends[glyph];
        const bool joins = !all.empty()
            && (end == letter || all.back().textBegin == all.back().textEnd || isMarkOnLetter(m_begins[letter]));
        if (!joins)
            all.push_back({glyph, glyph, m_begins[letter], m_begins[letter]});
        all.back().glyphEnd = glyph + 1;
        all.back().textEnd = m_begins[end];
        letter = end;
    }
    return all;
}

} // namespace

std::vector<GlyphCluster> glyphClusters(FontProgram &font, std::span<const quint32> glyphs, QStringView text)
{
    if (glyphs.empty())
        return {};
    return Alignment(font, glyphs, text).clusters();
}

} // namespace corvane

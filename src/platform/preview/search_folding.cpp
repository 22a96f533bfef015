#include "platform/preview/search_folding.h"

#include <algorithm>
#include <array>
#include <type_traits>

namespace corvane {

namespace {

/// Signs that keyboards lack beside those that people type for them.
char32_t asTyped(char32_t c)
{
    switch (c) {
    case 0x2018: // single quotation marks
    case 0x2019:
    case 0x201b:
    case 0x2032:
        return U'\'';
    case 0x201c: // double quotation marks
    case 0x201d:
    case 0x201f:
    case 0x2033:
        return U'"';
    case 0x2010: // hyphens, dashes, minus
    case 0x2011:
    case 0x2012:
    case 0x2013:
    case 0x2014:
    case 0x2015:
    case 0x2212:
        return U'-';
    default:
        return c;
    }
}

/// Accents of letters; not the vowel signs of other scripts, which make other words.
bool isAccent(char32_t c)
{
    return (c >= 0x300 && c < 0x370) || (c >= 0x1ab0 && c < 0x1b00) || (c >= 0x1dc0 && c < 0x1e00);
}

bool isInvisible(char32_t c)
{
    return c == 0xad || (c >= 0x200b && c <= 0x200f) || c == 0x2060 || c == 0xfeff;
}

QString foldOne(char32_t c, CaseRule rule)
{
    const char32_t typed = asTyped(c);
    if (isInvisible(typed))
        return {};
    if (rule == CaseRule::Ignore
        && (typed == 0xdf || typed == 0x1e9e)) // folds to two letters, which Qt leaves out
        return QStringLiteral("ss");
    QString text = QString::fromUcs4(&typed, 1);
    // Syllables of Hangul would come apart into letters that nobody types one by one.
    if (QChar::script(typed) != QChar::Script_Hangul)
        text = text.normalized(QString::NormalizationForm_KD);
    QString folded;
    for (const QChar part : text) {
        if (!isAccent(part.unicode()))
            folded += part.isSpace() ? QChar(u' ') : part;
    }
    return rule == CaseRule::Match ? folded : folded.toCaseFolded();
}

constexpr qsizetype kBlock = 32;

/// Folds a block and tells whether that was right: it is if the block is ASCII without control
/// characters, and it and the letter behind it are without two blanks in a row. Most text is so.
/// Without a branch, in numbers of 16 bits and by way of memory that is nobody else's, the compiler
/// folds eight letters at a time.
template <CaseRule rule, typename Letter> bool foldPlain(const char16_t *block, Letter *out)
{
    quint16 bits = 0;
    qint16 others = 0;
    for (qsizetype i = 0; i < kBlock; ++i) {
        const auto here = qint16(block[i]);
        const auto next = qint16(block[i + 1]);
        const qint16 greater = here > next ? here : next;
        bits |= block[i];
        others |= qint16(greater <= u' ' ? -1 : 0) | qint16(here < u' ' ? -1 : 0);
    }
    std::array<Letter, kBlock> folded;
    for (qsizetype i = 0; i < kBlock; ++i) {
        const auto here = qint16(block[i]);
        const auto bit = qint16((here >= u'A' ? 0x20 : 0) & (here <= u'Z' ? 0x20 : 0));
        folded[size_t(i)] = Letter(rule == CaseRule::Ignore ? here | bit : here);
    }
    std::ranges::copy(folded, out);
    return bits <= 0x7f && others == 0;
}

template <typename Letter> bool foldPlain(const char16_t *block, CaseRule rule, Letter *out)
{
    return rule == CaseRule::Ignore ? foldPlain<CaseRule::Ignore>(block, out)
                                    : foldPlain<CaseRule::Match>(block, out);
}

/// The same for a block whose letters fold to one letter each.
/// @param folds by letter
template <typename Letter>
bool foldEach(
    const char16_t *block, const std::vector<char16_t> &folds, bool afterBlank, Letter *out)
{
    constexpr auto kMost = std::min<quint32>(std::make_unsigned_t<Letter>(-1), 0xfffe);
    bool right = true;
    for (qsizetype i = 0; i < kBlock; ++i) {
        const char16_t folded = folds[block[i]];
        const bool isBlank = folded == u' ';
        right &= folded <= kMost && !(isBlank && afterBlank);
        afterBlank = isBlank;
        out[i] = Letter(folded);
    }
    return right;
}

} // namespace

quint32 originOf(std::span<const OriginStep> steps, quint32 folded)
{
    const auto after = std::ranges::upper_bound(steps, folded, {}, &OriginStep::folded);
    if (after == steps.begin())
        return folded;
    const OriginStep &step = *std::prev(after);
    return step.origin + (folded - step.folded);
}

/// Letters behind those of other texts, in memory that is there before they are.
template <typename Text> class SearchFolding::Writer
{
public:
    using Letter = typename Text::value_type;

    Writer(Text &out, std::vector<OriginStep> &steps, qsizetype expected)
        : m_out(out)
        , m_steps(steps)
        , m_begin(out.size())
        , m_firstStep(steps.size())
        , m_end(m_begin)
    {
        out.resize(m_begin + size_t(expected));
    }

    /// Where so many letters may be written.
    Letter *room(qsizetype letters)
    {
        if (m_end + size_t(letters) > m_out.size())
            m_out.resize(m_end + size_t(letters));
        return m_out.data() + m_end;
    }
    /// Of the room, letters that come from a place of the text and behind it.
    void keep(qsizetype letters, quint32 origin)
    {
        step(origin);
        m_end += size_t(letters);
        m_nextOrigin += quint32(letters);
    }

    bool endsInBlank() const { return m_end > m_begin && m_out[m_end - 1] == Letter(u' '); }
    void put(char16_t letter, quint32 origin)
    {
        if (letter == u' ' && endsInBlank())
            return;
        m_fits &= letter <= std::make_unsigned_t<Letter>(-1);
        *room(1) = Letter(letter);
        keep(1, origin);
    }
    bool fits() const { return m_fits; }
    void finish(quint32 end)
    {
        step(end);
        m_out.resize(m_end);
    }
    void undo()
    {
        m_out.resize(m_begin);
        m_steps.resize(m_firstStep);
    }

private:
    /// A letter that follows from its own place needs no step.
    void step(quint32 origin)
    {
        if (origin == m_nextOrigin)
            return;
        m_steps.push_back({quint32(m_end - m_begin), origin});
        m_nextOrigin = origin;
    }

    Text &m_out;
    std::vector<OriginStep> &m_steps;
    size_t m_begin;
    size_t m_firstStep;
    size_t m_end;
    quint32 m_nextOrigin = 0;
    bool m_fits = true;
};

SearchFolding::SearchFolding()
    : m_letters{
        std::vector<char16_t>(0x10000, kOtherLength), std::vector<char16_t>(0x10000, kOtherLength)}
{
    learn(0); // whoever only folds does not learn
}

SearchFolding::Folded SearchFolding::fold(QStringView text, CaseRule rule) const
{
    Folded folded;
    Writer writer(folded.text, folded.steps, text.size());
    for (qsizetype at = 0; at < text.size();)
        at = foldAt(
            text, at, rule, [&](char16_t letter, quint32 origin) { writer.put(letter, origin); });
    writer.finish(quint32(text.size()));
    return folded;
}

bool SearchFolding::append(
    QStringView text, CaseRule rule, std::string &out, std::vector<OriginStep> &steps)
{
    return appendTo(text, rule, out, steps);
}

bool SearchFolding::append(
    QStringView text, CaseRule rule, std::u16string &out, std::vector<OriginStep> &steps)
{
    return appendTo(text, rule, out, steps);
}

template <typename Text>
bool SearchFolding::appendTo(
    QStringView text, CaseRule rule, Text &out, std::vector<OriginStep> &steps)
{
    Writer writer(out, steps, text.size());
    const auto *letters = reinterpret_cast<const char16_t *>(text.utf16());
    for (qsizetype at = 0; at < text.size() && writer.fits();) {
        if (at + kBlock < text.size()) {
            const bool afterBlank = writer.endsInBlank();
            auto *room = writer.room(kBlock);
            if ((!(afterBlank && letters[at] == u' ') && foldPlain(letters + at, rule, room))
                || foldEach(letters + at, m_letters[size_t(rule)], afterBlank, room)) {
                writer.keep(kBlock, quint32(at));
                at += kBlock;
                continue;
            }
        }
        for (const qsizetype end = std::min(at + kBlock, text.size()); at < end;) {
            if (!m_known[text[at].row()])
                learn(text[at].row());
            at = foldAt(text, at, rule,
                [&](char16_t letter, quint32 origin) { writer.put(letter, origin); });
        }
    }
    if (writer.fits())
        writer.finish(quint32(text.size()));
    else
        writer.undo();
    return writer.fits();
}

/// @return the offset of the next letter
template <typename Put>
qsizetype SearchFolding::foldAt(QStringView text, qsizetype at, CaseRule rule, Put put) const
{
    const bool isPair
        = text[at].isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate();
    const char32_t c
        = isPair ? QChar::surrogateToUcs4(text[at], text[at + 1]) : char32_t(text[at].unicode());
    const std::vector<char16_t> &letters = m_letters[size_t(rule)];
    if (!isPair && (letters[c] != kOtherLength || QChar::isSurrogate(c))) {
        put(QChar::isSurrogate(c) ? char16_t(c) : letters[c], quint32(at));
        return at + 1;
    }
    for (const QChar part : foldOne(c, rule))
        put(part.unicode(), quint32(at));
    return at + (isPair ? 2 : 1);
}

void SearchFolding::learn(int row)
{
    m_known[size_t(row)] = true;
    for (const CaseRule rule : {CaseRule::Ignore, CaseRule::Match}) {
        for (int c = row << 8; c < (row + 1) << 8; ++c) {
            if (QChar::isSurrogate(char32_t(c)))
                continue;
            if (const QString folded = foldOne(char32_t(c), rule); folded.size() == 1)
                m_letters[size_t(rule)][size_t(c)] = folded[0].unicode();
        }
    }
}

} // namespace corvane

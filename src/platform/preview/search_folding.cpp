#include "platform/preview/search_folding.h"

#include <cstring>

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

// Most text is ASCII, of which nothing but blanks can change its length: looked at four letters at
// a time.
constexpr quint64 kBeyondAscii = 0xff80ff80ff80ff80;
constexpr quint64 kEach = 0x0001000100010001;
constexpr quint64 kLastBlank = quint64(0x80) << (Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? 48 : 0);

/// Whether all four letters are ASCII; `blanks` gets bit 7 of each that is a blank or a control
/// character.
bool isPlain(quint64 four, quint64 &blanks)
{
    blanks = ~(four + kEach * (0x7f - u' ')) & (kEach * 0x80);
    return (four & kBeyondAscii) == 0;
}

/// Whether two blanks follow one another, among four letters or from the four before.
bool areNeighbours(quint64 before, quint64 blanks)
{
    if constexpr (Q_BYTE_ORDER == Q_LITTLE_ENDIAN)
        return (blanks & ((blanks << 16) | (before >> 48))) != 0;
    return (blanks & ((blanks >> 16) | (before << 48))) != 0;
}

} // namespace

SearchFolding::SearchFolding()
    : m_letters{std::vector<char16_t>(0x10000), std::vector<char16_t>(0x10000)}
{
}

bool SearchFolding::keepsLength(QStringView text)
{
    const auto *letters = reinterpret_cast<const char16_t *>(text.utf16());
    qsizetype at = 0;
    quint64 blanks = 0;
    for (; at + 4 <= text.size(); at += 4) {
        quint64 four = 0;
        std::memcpy(&four, letters + at, sizeof four);
        const quint64 before = blanks;
        if (isPlain(four, blanks) && !areNeighbours(before, blanks))
            continue;
        if (!keepLength(text.sliced(at > 0 ? at - 1 : 0, at > 0 ? 5 : 4)))
            return false;
        blanks = m_letters[size_t(CaseRule::Ignore)][letters[at + 3]] == u' '
            ? kLastBlank
            : 0; // known since it was looked at
    }
    return keepLength(text.sliced(at > 0 ? at - 1 : 0));
}

bool SearchFolding::keepLength(QStringView text)
{
    bool keeps = true;
    char16_t before = 0;
    for (const QChar c : text) {
        if (!m_known[c.row()])
            learn(c.row());
        // What folds to one letter without its case does so with it.
        const char16_t folded = m_letters[size_t(CaseRule::Ignore)][c.unicode()];
        keeps &= folded != kOtherLength && !(folded == u' ' && before == u' ');
        before = folded;
    }
    return keeps;
}

SearchFolding::Folded SearchFolding::fold(QStringView text, CaseRule rule) const
{
    const std::vector<char16_t> &letters = m_letters[size_t(rule)];
    Folded folded;
    folded.text.reserve(size_t(text.size()));
    folded.origins.reserve(size_t(text.size()) + 1);
    for (qsizetype at = 0, next = 0; at < text.size(); at = next) {
        const auto origin = quint32(at);
        const bool isPair
            = text[at].isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate();
        const char32_t c = isPair ? QChar::surrogateToUcs4(text[at], text[at + 1])
                                  : char32_t(text[at].unicode());
        next = at + (isPair ? 2 : 1);
        const bool isPlain = c < letters.size() && m_known[c >> 8] && letters[c] != kOtherLength;
        const QString parts
            = isPlain ? QString(QChar(letters[c])) : foldOne(c, rule); // one or two letters, mostly
        for (const QChar part : parts) {
            if (part == u' ' && !folded.text.empty() && folded.text.back() == u' ')
                continue;
            folded.text.push_back(part.unicode());
            folded.origins.push_back(origin);
        }
    }
    folded.origins.push_back(quint32(text.size()));
    return folded;
}

void SearchFolding::learn(int row)
{
    m_known[size_t(row)] = true;
    for (const CaseRule rule : {CaseRule::Ignore, CaseRule::Match}) {
        for (int c = row << 8; c < (row + 1) << 8; ++c) {
            const QString folded
                = QChar::isSurrogate(char32_t(c)) ? QString(QChar(c)) : foldOne(char32_t(c), rule);
            m_letters[size_t(rule)][size_t(c)]
                = folded.size() == 1 ? folded[0].unicode() : kOtherLength;
        }
    }
}

} // namespace corvane

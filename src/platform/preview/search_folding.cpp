#include "platform/preview/search_folding.h"

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

/// Whether a block and the letter behind it are ASCII without two blanks, or control characters, in
/// a row: then it keeps its length. Most text is so. Without a branch, and in signed numbers of 16
/// bits, the compiler looks at eight letters at a time.
bool isPlain(const char16_t *block)
{
    quint16 bits = 0;
    qint16 blanks = 0;
    for (qsizetype i = 0; i < kBlock; ++i) {
        const auto here = qint16(block[i]);
        const auto next = qint16(block[i + 1]);
        const qint16 greater = here > next ? here : next;
        bits |= block[i];
        blanks |= qint16(greater <= u' ' ? -1 : 0);
    }
    return bits <= 0x7f && blanks == 0;
}

} // namespace

SearchFolding::SearchFolding()
    : m_letters{std::vector<char16_t>(0x10000), std::vector<char16_t>(0x10000)}
{
    learn(0); // what is plain was not asked about letter by letter
}

bool SearchFolding::keepsLength(QStringView text)
{
    const auto *letters = reinterpret_cast<const char16_t *>(text.utf16());
    qsizetype at = 0;
    for (; at + kBlock < text.size(); at += kBlock) {
        const qsizetype before = at > 0 ? 1 : 0; // may be a blank that is not ASCII
        if (!isPlain(letters + at) && !keepLength(text.sliced(at - before, before + kBlock + 1)))
            return false;
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
        const auto put = [&](char16_t part) {
            if (part == u' ' && !folded.text.empty() && folded.text.back() == u' ')
                return;
            folded.text.push_back(part);
            folded.origins.push_back(origin);
        };
        if (c < letters.size() && m_known[c >> 8] && letters[c] != kOtherLength) {
            put(letters[c]);
            continue;
        }
        for (const QChar part : foldOne(c, rule))
            put(part.unicode());
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

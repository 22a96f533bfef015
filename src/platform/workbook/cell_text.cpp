#include "platform/workbook/cell_text.h"

#include "platform/workbook/records.h"

#include <QtCore/QList>

#include <algorithm>
#include <array>

namespace corvane {

namespace {

bool isReplaced(char16_t c)
{
    return (c < 0x20 && c != u'\t' && c != u'\n') || (c >= 0x7F && c < 0xA0) || c >= 0xFFFE;
}

/// Whether a byte can be part of what setCellText changes: controls, the lead byte of U+0080 to
/// U+00BF, that of U+F000 and up.
bool isSuspect(char c)
{
    const auto byte = uchar(c);
    return byte < 0x20 || byte == 0x7F || byte == 0xC2 || byte == 0xEF;
}

void unifyLineBreaks(QString &text)
{
    if (!text.contains(u'\r'))
        return;
    text.replace(QLatin1StringView("\r\n"), QLatin1StringView("\n"));
    text.replace(u'\r', u'\n');
}

struct Range
{
    char32_t first;
    char32_t last;
};

/// The large blocks of Unicode's EastAsianWidth.txt with W or F.
constexpr std::array kWide{Range{0x1100, 0x115F}, Range{0x2E80, 0xA4CF}, Range{0xAC00, 0xD7A3},
    Range{0xF900, 0xFAFF}, Range{0xFE30, 0xFE6F}, Range{0xFF00, 0xFF60}, Range{0xFFE0, 0xFFE6},
    Range{0x1F300, 0x1F64F}, Range{0x1F900, 0x1F9FF}, Range{0x20000, 0x3FFFD}};

int codePointWidth(char32_t c)
{
    if (c < 0x300)
        return 1;
    const QChar::Category category = QChar::category(c);
    if (category == QChar::Mark_NonSpacing || category == QChar::Mark_Enclosing
        || category == QChar::Other_Format)
        return 0;
    const bool isWide = std::any_of(kWide.begin(), kWide.end(),
        [c](Range range) { return c >= range.first && c <= range.last; });
    return isWide ? 2 : 1;
}

} // namespace

TextChanges setCellText(QString &out, QByteArrayView utf8)
{
    out = QString::fromUtf8(utf8);
    unifyLineBreaks(out);
    TextChanges changes;
    if (out.size() > biff::kMaxCellText) {
        changes.wasCut = true;
        out.truncate(out[biff::kMaxCellText - 1].isHighSurrogate() ? biff::kMaxCellText - 1
                                                                   : biff::kMaxCellText);
    }
    for (QChar &c : out) {
        if (isReplaced(c.unicode())) {
            c = QChar::ReplacementCharacter;
            ++changes.replaced;
        }
    }
    return changes;
}

TextChanges cellTextChanges(QByteArrayView utf8)
{
    const bool isPlain
        = utf8.size() <= biff::kMaxCellText && std::none_of(utf8.begin(), utf8.end(), isSuspect);
    if (isPlain)
        return {};
    QString text;
    return setCellText(text, utf8);
}

int textWidth(QByteArrayView utf8)
{
    if (std::all_of(utf8.begin(), utf8.end(), [](char c) { return uchar(c) < 0x80; }))
        return int(std::min<qsizetype>(utf8.size(), biff::kMaxCellText));
    int width = 0;
    for (const char32_t c : QString::fromUtf8(utf8).toUcs4())
        width += codePointWidth(c);
    return width;
}

} // namespace corvane

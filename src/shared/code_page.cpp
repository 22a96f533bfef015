#include "shared/code_page.h"

#include <algorithm>
#include <array>

namespace corvane {

namespace {

/// Bytes 0x80 to 0x9f; https://www.unicode.org/Public/MAPPINGS/VENDORS/MICSFT/WINDOWS/CP1252.TXT
constexpr std::array<char16_t, 32> kHigh {0x20ac, 0x0081, 0x201a, 0x0192, 0x201e, 0x2026, 0x2020, 0x2021,
    0x02c6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008d, 0x017d, 0x008f, 0x0090, 0x2018, 0x2019, 0x201c, 0x201d,
    0x2022, 0x2013, 0x2014, 0x02dc, 0x2122, 0x0161, 0x203a, 0x0153, 0x009d, 0x017e, 0x0178};

} // namespace

QString fromWindows1252(QByteArrayView bytes)
{
    QString text(bytes.size(), Qt::Uninitialized);
    std::ranges::transform(bytes, text.begin(), [](char byte) {
        const auto c = uchar(byte);
        return QChar(c >= 0x80 && c < 0xa0 ? kHigh[c - 0x80] : char16_t(c));
    });
    return text;
}

std::optional<uchar> toWindows1252(QChar c)
{
    const char16_t code = c.unicode();
    if (code < 0x80 || (code >= 0xa0 && code <= 0xff))
        return uchar(code);
    const auto high = std::ranges::find(kHigh, code);
    if (high == kHigh.end())
        return std::nullopt;
    return uchar(0x80 + (high - kHigh.begin()));
}

} // namespace corvane

#include "platform/pdf/content_stream.h"

#include <algorithm>
#include <charconv>
#include <cstring>

namespace corvane {

namespace {

constexpr size_t kLongestNumber = 24;
constexpr size_t kFirstRoom = 16'384;

/// A colour part of 0 to 255 as a part of 1, to three decimals.
char *putColourPart(char *at, int part)
{
    const int thousandths = (part * 1000 + 127) / 255;
    if (thousandths == 0 || thousandths == 1000) {
        *at++ = thousandths == 0 ? '0' : '1';
    } else {
        *at++ = '.';
        *at++ = char('0' + thousandths / 100);
        *at++ = char('0' + thousandths / 10 % 10);
        *at++ = char('0' + thousandths % 10);
    }
    *at++ = ' ';
    return at;
}

} // namespace

char *ContentStream::room(size_t size)
{
    if (m_size + size > m_bytes.size())
        m_bytes.resize(std::max({m_size + size, m_bytes.size() * 2, kFirstRoom}));
    return m_bytes.data() + m_size;
}

void ContentStream::text(std::string_view bytes)
{
    std::memcpy(room(bytes.size()), bytes.data(), bytes.size());
    m_size += bytes.size();
}

void ContentStream::number(qint64 hundredths)
{
    char *at = putNumber(room(kLongestNumber), hundredths);
    *at++ = ' ';
    commit(at);
}

void ContentStream::fillColour(QRgb colour)
{
    char *at = room(kLongestNumber);
    at = putColourPart(at, qRed(colour));
    if (qRed(colour) == qGreen(colour) && qGreen(colour) == qBlue(colour)) {
        *at++ = 'g';
    } else {
        at = putColourPart(at, qGreen(colour));
        at = putColourPart(at, qBlue(colour));
        *at++ = 'r';
        *at++ = 'g';
    }
    *at++ = '\n';
    commit(at);
}

char *ContentStream::putNumber(char *at, qint64 hundredths)
{
    if (hundredths < 0) {
        *at++ = '-';
        hundredths = -hundredths;
    }
    const auto fraction = int(hundredths % 100);
    if (hundredths >= 100 || fraction == 0)
        at = std::to_chars(at, at + kLongestNumber, hundredths / 100).ptr;
    if (fraction != 0) {
        *at++ = '.';
        *at++ = char('0' + fraction / 10);
        if (fraction % 10 != 0)
            *at++ = char('0' + fraction % 10);
    }
    return at;
}

} // namespace corvane

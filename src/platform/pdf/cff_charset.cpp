#include "platform/pdf/cff_charset.h"

namespace corvane {

namespace {

constexpr int kEscape = 12;
constexpr int kCharset = 15;
constexpr int kCharStrings = 17;
constexpr int kRegistryOrderingSupplement = kEscape << 8 | 30;

/// Reads big-endian numbers; behind the end of the data everything is zero.
class Reader
{
public:
    Reader(QByteArrayView data, qsizetype at)
        : m_data(data)
        , m_at(at)
    {
    }

    bool atEnd() const { return m_at < 0 || m_at >= m_data.size(); }
    qsizetype position() const { return m_at; }
    void skip(qsizetype count) { m_at += count; }

    quint32 number(int bytes)
    {
        quint32 value = 0;
        for (int i = 0; i < bytes; ++i, ++m_at)
            value = value << 8 | (atEnd() ? 0u : quint8(m_data[m_at]));
        return value;
    }

private:
    QByteArrayView m_data;
    qsizetype m_at;
};

/// An INDEX (section 5): how many objects, where the first lies and where the next structure starts.
struct Index {
    quint32 count = 0;
    qsizetype firstBegin = 0;
    qsizetype firstEnd = 0;
    qsizetype end = 0;
};

Index readIndex(QByteArrayView cff, qsizetype at)
{
    Reader reader(cff, at);
    Index index;
    index.count = reader.number(2);
    index.end = reader.position();
    if (index.count == 0)
        return index;
    const auto offsetSize = int(reader.number(1));
    const qsizetype offsets = reader.position();
    const qsizetype base = offsets + qsizetype(index.count + 1) * offsetSize - 1;
    index.firstBegin = base + reader.number(offsetSize);
    index.firstEnd = base + reader.number(offsetSize);
    index.end = base + Reader(cff, offsets + qsizetype(index.count) * offsetSize).number(offsetSize);
    return index;
}

struct TopDict {
    bool isCidKeyed = false;
    quint32 charset = 0;     ///< offset; 0 to 2 are charsets that every reader knows
    quint32 charStrings = 0; ///< offset
};

/// Steps over one operand (section 4, table 3) and gives its value where it is a whole number.
quint32 readOperand(Reader &reader, quint32 first)
{
    if (first == 28)
        return reader.number(2);
    if (first == 29)
        return reader.number(4);
    if (first == 30) { // a real: nibbles up to the one that ends it
        while (!reader.atEnd() && (reader.number(1) & 0xf) != 0xf) { }
        return 0;
    }
    if (first >= 247 && first <= 250)
        return (first - 247) * 256 + reader.number(1) + 108;
    if (first >= 251 && first <= 254) // negative: never an offset
        reader.skip(1);
    return first >= 32 && first <= 246 ? first - 139 : 0;
}

TopDict readTopDict(QByteArrayView dict)
{
    TopDict top;
    quint32 operand = 0;
    for (Reader reader(dict, 0); !reader.atEnd();) {
        const quint32 first = reader.number(1);
        if (first > 21) {
            operand = readOperand(reader, first);
            continue;
        }
        switch (first == kEscape ? kEscape << 8 | int(reader.number(1)) : int(first)) {
        case kCharset:
            top.charset = operand;
            break;
        case kCharStrings:
            top.charStrings = operand;
            break;
        case kRegistryOrderingSupplement:
            top.isCidKeyed = true;
            break;
        default:
            break;
        }
    }
    return top;
}

} // namespace

bool numberCidsByGlyph(QByteArray &cff)
{
    const qsizetype headerSize = cff.size() > 2 ? quint8(cff[2]) : 0;
    const Index dicts = readIndex(cff, readIndex(cff, headerSize).end);
    if (dicts.firstBegin < 0 || dicts.firstEnd > cff.size() || dicts.firstBegin > dicts.firstEnd)
        return false;
    const TopDict top = readTopDict(QByteArrayView(cff).sliced(dicts.firstBegin, dicts.firstEnd - dicts.firstBegin));
    const quint32 glyphs = readIndex(cff, top.charStrings).count;
    if (!top.isCidKeyed || glyphs < 2)
        return true;

    // Ranges take no more room than what stands there: a table of 16-bit numbers, or ranges itself.
    constexpr int kNumbers = 0;
    constexpr int kShortRanges = 1;
    constexpr int kLongRanges = 2;
    const int format = int(Reader(cff, top.charset).number(1));
    const bool isOneShortRange = format == kShortRanges
        && Reader(cff, top.charset + 3).number(1) + 2 == glyphs;
    QByteArray charset;
    if (glyphs == 2 && format == kNumbers)
        charset = QByteArray::fromHex("000001");
    else if (isOneShortRange)
        charset = QByteArray::fromHex("010001") + char(glyphs - 2);
    else
        charset = QByteArray::fromHex("020001") + char((glyphs - 2) >> 8) + char((glyphs - 2) & 0xff);
    if (top.charset <= kLongRanges || format > kLongRanges || top.charset + charset.size() > cff.size())
        return false;
    cff.replace(top.charset, charset.size(), charset);
    return true;
}

} // namespace corvane

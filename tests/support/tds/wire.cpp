#include "support/tds/wire.h"

namespace corvane::test::tds {

WireWriter &WireWriter::integer(quint64 number, int size)
{
    for (int i = 0; i < size; ++i, number >>= 8)
        m_data += char(number & 0xff);
    return *this;
}

WireWriter &WireWriter::bytes(QByteArrayView data)
{
    m_data += data;
    return *this;
}

WireWriter &WireWriter::utf16(QStringView text)
{
    for (const QChar c : text)
        integer(c.unicode(), 2);
    return *this;
}

WireWriter &WireWriter::shortText(QStringView text)
{
    return integer(quint64(text.size()), 1).utf16(text);
}

WireWriter &WireWriter::longText(QStringView text)
{
    return integer(quint64(text.size()), 2).utf16(text);
}

quint64 WireReader::integer(int size)
{
    const QByteArrayView field = bytes(size);
    quint64 number = 0;
    for (int i = size - 1; i >= 0; --i)
        number = number << 8 | quint8(field[i]);
    return number;
}

QByteArrayView WireReader::bytes(qsizetype size)
{
    if (size < 0 || size > m_rest.size())
        throw WireFault("a message ends inside a field");
    const QByteArrayView field = m_rest.first(size);
    m_rest = m_rest.sliced(size);
    return field;
}

QString WireReader::utf16(qsizetype units)
{
    QString text;
    for (qsizetype i = 0; i < units; ++i)
        text += QChar(char16_t(integer(2)));
    return text;
}

QByteArray utf16Bytes(QStringView text)
{
    return WireWriter().utf16(text).data();
}

} // namespace corvane::test::tds

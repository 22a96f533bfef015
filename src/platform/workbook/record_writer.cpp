#include "platform/workbook/record_writer.h"

#include "platform/workbook/compound_file.h"

#include <algorithm>
#include <limits>

namespace corvane {

namespace {
constexpr qsizetype kBlock = 262'144;
constexpr quint32 kLongestStream = 0x7FF0'0000;
} // namespace

RecordWriter::RecordWriter(CompoundFile &file)
    : m_file(file)
{
    m_block.reserve(kBlock + biff::kMaxRecordData + biff::kRecordHeader);
}

void RecordWriter::begin(biff::Record type)
{
    m_start = m_block.size();
    u16(quint16(type));
    u16(0);
}

void RecordWriter::end()
{
    const qsizetype size = m_block.size() - m_start - biff::kRecordHeader;
    Q_ASSERT(size <= biff::kMaxRecordData);
    m_block[m_start + 2] = char(size & 0xFF);
    m_block[m_start + 3] = char(size >> 8);
    if (m_block.size() >= kBlock)
        flush();
}

void RecordWriter::record(biff::Record type, std::initializer_list<quint16> words)
{
    begin(type);
    for (const quint16 word : words)
        u16(word);
    end();
}

void RecordWriter::wholeRecord(QByteArrayView bytes)
{
    m_block.append(bytes);
    if (m_block.size() >= kBlock)
        flush();
}

quint8 RecordWriter::widthFlag(QStringView text)
{
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 0x100; }) ? 0
                                                                                              : 1;
}

void RecordWriter::characters(QStringView text, quint8 flag)
{
    if (flag != 0) {
        m_block.append(reinterpret_cast<const char *>(text.utf16()), text.size() * 2);
        return;
    }
    const qsizetype old = m_block.size();
    m_block.resize(old + text.size());
    std::transform(
        text.begin(), text.end(), m_block.data() + old, [](QChar c) { return char(c.unicode()); });
}

void RecordWriter::shortText(QStringView text)
{
    Q_ASSERT(text.size() <= std::numeric_limits<quint8>::max());
    const quint8 flag = widthFlag(text);
    u8(quint8(text.size()));
    u8(flag);
    characters(text, flag);
}

void RecordWriter::longText(QStringView text)
{
    const quint8 flag = widthFlag(text);
    u16(quint16(text.size()));
    u8(flag);
    characters(text, flag);
}

void RecordWriter::overwrite(quint32 position, quint32 value)
{
    flush();
    m_file.overwrite(
        position, QByteArrayView(reinterpret_cast<const char *>(&value), sizeof value));
}

void RecordWriter::flush()
{
    if (position() > kLongestStream)
        throw StreamTooLong();
    m_file.write(m_block);
    m_flushed += quint32(m_block.size());
    m_block.resize(0);
    m_start = 0;
}

} // namespace corvane

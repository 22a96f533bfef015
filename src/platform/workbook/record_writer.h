#pragma once

#include "platform/workbook/records.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <bit>
#include <exception>
#include <initializer_list>

namespace corvane {

class CompoundFile;

/// The stream would be longer than readers accept (2 GB).
class StreamTooLong : public std::exception
{
public:
    const char *what() const noexcept override { return "stream too long"; }
};

/// Collects little-endian BIFF8 records and hands them to the container's stream in large blocks.
/// Throws CompoundFileError and StreamTooLong.
class RecordWriter
{
public:
    explicit RecordWriter(CompoundFile &file);

    void begin(biff::Record type);
    /// Sets the record's length. Every record holds at most biff::kMaxRecordData bytes; longer ones
    /// are split by their writer.
    void end();
    /// A whole record of 16-bit numbers.
    void record(biff::Record type, std::initializer_list<quint16> words = {});
    /// A record that its caller put together, header included.
    void wholeRecord(QByteArrayView bytes);

    void u8(quint8 value) { m_block.append(char(value)); }
    void u16(quint16 value) { put(value); }
    void u32(quint32 value) { put(value); }
    void f64(double value) { put(std::bit_cast<quint64>(value)); }
    void bytes(QByteArrayView data) { m_block.append(data); }
    void zeros(qsizetype count) { m_block.append(count, '\0'); }
    /// The characters alone: one byte each when all are below U+0100, else UTF-16.
    /// @return the flag byte that says which ([MS-XLS] XLUnicodeString, fHighByte)
    static quint8 widthFlag(QStringView text);
    void characters(QStringView text, quint8 flag);
    /// [MS-XLS] ShortXLUnicodeString: up to 255 characters.
    void shortText(QStringView text);
    /// [MS-XLS] XLUnicodeString.
    void longText(QStringView text);

    /// Bytes of the stream so far: where the next one goes.
    quint32 position() const { return m_flushed + quint32(m_block.size()); }
    /// Where the record in work starts.
    quint32 recordStart() const { return m_flushed + quint32(m_start); }
    /// How many bytes the record in work can still take.
    qsizetype room() const
    {
        return biff::kMaxRecordData - (m_block.size() - m_start - biff::kRecordHeader);
    }
    /// Replaces a number that was written before its value was known.
    void overwrite(quint32 position, quint32 value);
    void flush();

private:
    template <typename Number> void put(Number value)
    {
        static_assert(std::endian::native == std::endian::little);
        m_block.append(reinterpret_cast<const char *>(&value), qsizetype(sizeof value));
    }

    CompoundFile &m_file;
    QByteArray m_block;
    qsizetype m_start = 0; ///< of the record in work, in the block
    quint32 m_flushed = 0;
};

} // namespace corvane

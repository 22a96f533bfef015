#pragma once

#include <QtCore/QtGlobal>
#include <QtGui/QRgb>

#include <string>
#include <string_view>

namespace corvane {

/// Hundredths of a point: the unit in which twips (five of them) are exact and numbers stay short.
constexpr qint64 hundredthsOf(qint32 twips)
{
    return qint64(twips) * 5;
}

/// The bytes of a content stream (ISO 32000-1, 7.8.2). Memory is kept from one page to the next.
class ContentStream
{
public:
    void clear() { m_size = 0; }
    std::string_view bytes() const { return {m_bytes.data(), m_size}; }

    /// Space for `size` more bytes; to be handed back with commit() once written.
    char *room(size_t size);
    void commit(const char *end) { m_size = size_t(end - m_bytes.data()); }

    void text(std::string_view bytes);
    /// A number of hundredths of a point and a blank behind it.
    void number(qint64 hundredths);
    void fillColour(QRgb colour);

    static char *putNumber(char *at, qint64 hundredths);
    /// One byte of a literal string (7.3.4.2), escaped where it must be: two bytes at the most.
    static char *putStringByte(char *at, unsigned char byte)
    {
        if (byte == '(' || byte == ')' || byte == '\\' || byte == '\r') {
            *at++ = '\\';
            byte = byte == '\r' ? 'r' : byte;
        }
        *at++ = char(byte);
        return at;
    }

private:
    std::string m_bytes;
    size_t m_size = 0;
};

} // namespace corvane

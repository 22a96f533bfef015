#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <exception>

namespace corvane::test::tds {

/// A message that ends before its fields do, or that this server does not understand.
struct WireFault : std::exception
{
    explicit WireFault(QByteArray what)
        : m_what(std::move(what))
    {
    }
    const char *what() const noexcept override { return m_what.constData(); }

private:
    QByteArray m_what;
};

/// Builds a message: integers little-endian, text as UTF-16LE ([MS-TDS] 2.2.5, "Data Type
/// Definitions").
class WireWriter
{
public:
    /// The `size` low bytes of the number.
    WireWriter &integer(quint64 number, int size);
    WireWriter &byte(int number) { return integer(quint64(number), 1); }
    WireWriter &bytes(QByteArrayView data);
    WireWriter &utf16(QStringView text);
    /// B_VARCHAR: a byte with the number of characters, then the text.
    WireWriter &shortText(QStringView text);
    /// US_VARCHAR: the same with two bytes.
    WireWriter &longText(QStringView text);

    const QByteArray &data() const { return m_data; }

private:
    QByteArray m_data;
};

/// Reads a message from front to back; WireFault beyond its end.
class WireReader
{
public:
    explicit WireReader(QByteArrayView data)
        : m_rest(data)
    {
    }

    quint64 integer(int size);
    QByteArrayView bytes(qsizetype size);
    /// `units` characters of UTF-16LE.
    QString utf16(qsizetype units);
    bool atEnd() const { return m_rest.isEmpty(); }

private:
    QByteArrayView m_rest;
};

/// UTF-16LE without a length in front.
QByteArray utf16Bytes(QStringView text);

} // namespace corvane::test::tds

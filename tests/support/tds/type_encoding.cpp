#include "support/tds/type_encoding.h"

#include <QtCore/QDateTime>
#include <QtCore/QUuid>
#include <QtCore/QtEndian>

#include <algorithm>
#include <array>
#include <bit>

namespace corvane::test::tds {

namespace {

/// How lengths and nulls are written.
enum class Framing {
    Byte, ///< a byte; null is 0
    Word, ///< two bytes; null is 0xFFFF
    Chunks, ///< eight bytes, then chunks with four (PLP); null is all ones
    Pointer ///< a text pointer and four bytes; null is a pointer of length 0
};

struct WireType
{
    ColumnType type;
    quint8 token;
    Framing framing;
    int length = 0; ///< as TYPE_INFO has it; 0: none, or the column's
    bool collated = false;
};

constexpr int kUnlimited = 0xffff;

constexpr std::array kWireTypes{
    WireType{ColumnType::Bit, 0x68, Framing::Byte, 1},
    WireType{ColumnType::TinyInt, 0x26, Framing::Byte, 1},
    WireType{ColumnType::SmallInt, 0x26, Framing::Byte, 2},
    WireType{ColumnType::Int, 0x26, Framing::Byte, 4},
    WireType{ColumnType::BigInt, 0x26, Framing::Byte, 8},
    WireType{ColumnType::Real, 0x6d, Framing::Byte, 4},
    WireType{ColumnType::Float, 0x6d, Framing::Byte, 8},
    WireType{ColumnType::SmallMoney, 0x6e, Framing::Byte, 4},
    WireType{ColumnType::Money, 0x6e, Framing::Byte, 8},
    WireType{ColumnType::Decimal, 0x6a, Framing::Byte},
    WireType{ColumnType::SmallDateTime, 0x6f, Framing::Byte, 4},
    WireType{ColumnType::DateTime, 0x6f, Framing::Byte, 8},
    WireType{ColumnType::DateTime2, 0x2a, Framing::Byte},
    WireType{ColumnType::Date, 0x28, Framing::Byte},
    WireType{ColumnType::Time, 0x29, Framing::Byte},
    WireType{ColumnType::DateTimeOffset, 0x2b, Framing::Byte},
    WireType{ColumnType::UniqueIdentifier, 0x24, Framing::Byte, 16},
    WireType{ColumnType::Char, 0xaf, Framing::Word, 0, true},
    WireType{ColumnType::VarChar, 0xa7, Framing::Word, 0, true},
    WireType{ColumnType::VarCharMax, 0xa7, Framing::Chunks, kUnlimited, true},
    WireType{ColumnType::NChar, 0xef, Framing::Word, 0, true},
    WireType{ColumnType::NVarChar, 0xe7, Framing::Word, 0, true},
    WireType{ColumnType::NVarCharMax, 0xe7, Framing::Chunks, kUnlimited, true},
    WireType{ColumnType::Text, 0x23, Framing::Pointer, 0, true},
    WireType{ColumnType::NText, 0x63, Framing::Pointer, 0, true},
    WireType{ColumnType::Xml, 0xf1, Framing::Chunks},
    WireType{ColumnType::VarBinary, 0xa5, Framing::Word},
    WireType{ColumnType::VarBinaryMax, 0xa5, Framing::Chunks, kUnlimited},
    WireType{ColumnType::Image, 0x22, Framing::Pointer},
};

/// Latin1_General_CI_AS: texts of one byte are Windows-1252.
constexpr QByteArrayView kCollation("\x09\x04\xd0\x00\x34", 5);
constexpr quint64 kLongest = 0x7fffffff;
constexpr qsizetype kChunkSize = 4000;

const WireType &wireType(ColumnType type)
{
    return *std::ranges::find(kWireTypes, type, &WireType::type);
}

[[noreturn]] void refuse(const Column &column, QStringView value)
{
    throw WireFault(QString(u"no value of the column " + column.name + u": " + value).toUtf8());
}

bool isWide(ColumnType type)
{
    return type == ColumnType::NChar || type == ColumnType::NVarChar
        || type == ColumnType::NVarCharMax || type == ColumnType::NText || type == ColumnType::Xml;
}

// Numbers

int decimalBytes(int precision)
{
    return precision <= 9 ? 4 : precision <= 19 ? 8 : precision <= 28 ? 12 : 16;
}

/// The number without its point, with exactly `scale` digits behind it, as bytes.
QByteArray magnitude(const Column &column, QStringView digits, int scale, int size)
{
    const qsizetype point = digits.indexOf(u'.');
    QString all = point < 0 ? digits.toString()
                            : QString(digits.first(point).toString() + digits.sliced(point + 1));
    const qsizetype behind = point < 0 ? 0 : digits.size() - point - 1;
    if (behind > scale || !std::ranges::all_of(all, [](QChar c) { return c.isDigit(); }))
        refuse(column, digits);
    all += QString(scale - behind, u'0');
    QByteArray bytes(size, '\0');
    for (const QChar digit : std::as_const(all)) {
        int carry = digit.digitValue();
        for (char &byte : bytes) {
            const int sum = quint8(byte) * 10 + carry;
            byte = char(sum & 0xff);
            carry = sum >> 8;
        }
        if (carry)
            refuse(column, digits);
    }
    return bytes;
}

QByteArray decimal(const Column &column, QStringView text)
{
    const bool negative = text.startsWith(u'-');
    return char(negative ? 0 : 1)
        + magnitude(column, text.sliced(negative), column.scale, decimalBytes(column.size));
}

/// Ten-thousandths; the eight bytes of money have their high half first.
QByteArray money(const Column &column, QStringView text)
{
    constexpr int kScale = 4;
    const bool negative = text.startsWith(u'-');
    const auto amount = qFromLittleEndian<qint64>(
        magnitude(column, text.sliced(negative), kScale, 8).constData());
    const auto parts = quint64(negative ? -amount : amount);
    if (column.type == ColumnType::SmallMoney)
        return WireWriter().integer(parts, 4).data();
    return WireWriter().integer(parts >> 32, 4).integer(parts, 4).data();
}

QByteArray real(const Column &column, QStringView text)
{
    bool isNumber = false;
    const double number = text.toDouble(&isNumber);
    if (!isNumber)
        refuse(column, text);
    if (column.type == ColumnType::Float)
        return WireWriter().integer(std::bit_cast<quint64>(number), 8).data();
    return WireWriter().integer(std::bit_cast<quint32>(float(number)), 4).data();
}

QByteArray whole(const Column &column, QStringView text, int size)
{
    bool isNumber = false;
    const qint64 number = text.toLongLong(&isNumber);
    if (!isNumber)
        refuse(column, text);
    return WireWriter().integer(quint64(number), size).data();
}

// Dates and times

struct Moment
{
    QDate date{1900, 1, 1};
    qint64 ticks = 0; ///< ten-millionths of a second after midnight
    int offset = 0; ///< minutes east of Greenwich
};

constexpr qint64 kTicksPerSecond = 10'000'000;

/// "2026-11-01", "08:30:00.1234567", both with a blank between, " +05:30" behind.
Moment moment(const Column &column, const QString &text)
{
    Moment result;
    for (const QString &part : text.split(u' ')) {
        const qsizetype point = part.indexOf(u'.');
        const QTime time = QTime::fromString(part.left(8), QStringLiteral("HH:mm:ss"));
        if (part.startsWith(u'+') || part.startsWith(u'-')) {
            const int minutes = part.mid(1, 2).toInt() * 60 + part.mid(4, 2).toInt();
            result.offset = part.startsWith(u'-') ? -minutes : minutes;
        } else if (time.isValid()) {
            const QString fraction = point < 0 ? QString() : part.mid(point + 1);
            result.ticks = time.msecsSinceStartOfDay() / 1000 * kTicksPerSecond
                + fraction.leftJustified(7, u'0', true).toLongLong();
        } else {
            result.date = QDate::fromString(part, Qt::ISODate);
            if (!result.date.isValid())
                refuse(column, text);
        }
    }
    return result;
}

/// With 300 parts of a second.
QByteArray dateTime(const Moment &m)
{
    const qint64 days = QDate(1900, 1, 1).daysTo(m.date);
    const qint64 parts = (m.ticks * 300 + kTicksPerSecond / 2) / kTicksPerSecond;
    return WireWriter().integer(quint64(days), 4).integer(quint64(parts), 4).data();
}

QByteArray smallDateTime(const Moment &m)
{
    const qint64 days = QDate(1900, 1, 1).daysTo(m.date);
    const qint64 minutes = m.ticks / kTicksPerSecond / 60;
    return WireWriter().integer(quint64(days), 2).integer(quint64(minutes), 2).data();
}

QByteArray timeBytes(const Moment &m, int scale)
{
    qint64 units = m.ticks;
    for (int i = scale; i < 7; ++i)
        units /= 10;
    return WireWriter().integer(quint64(units), scale <= 2 ? 3 : scale <= 4 ? 4 : 5).data();
}

QByteArray dateBytes(const Moment &m)
{
    return WireWriter().integer(quint64(QDate(1, 1, 1).daysTo(m.date)), 3).data();
}

QByteArray offsetBytes(Moment m, int scale)
{
    constexpr qint64 kDay = 86'400 * kTicksPerSecond;
    m.ticks -= qint64(m.offset) * 60 * kTicksPerSecond;
    m.date = m.date.addDays(m.ticks < 0 ? -1 : m.ticks >= kDay ? 1 : 0);
    m.ticks = (m.ticks + kDay) % kDay;
    return timeBytes(m, scale) + dateBytes(m) + WireWriter().integer(quint64(m.offset), 2).data();
}

// Texts and bytes

/// Texts of the tests hold nothing that differs between this and the server's code page.
QByteArray narrow(const Column &column, const QString &text)
{
    if (std::ranges::any_of(text, [](QChar c) { return c.unicode() > 0xff; }))
        refuse(column, text);
    return text.toLatin1();
}

QByteArray guid(const Column &column, const QString &text)
{
    const QUuid id = QUuid::fromString(text);
    if (id.isNull())
        refuse(column, text);
    return WireWriter()
        .integer(id.data1, 4)
        .integer(id.data2, 2)
        .integer(id.data3, 2)
        .bytes(QByteArrayView(id.data4, 8))
        .data();
}

QByteArray textBytes(const Column &column, const QString &text)
{
    const bool padded = column.type == ColumnType::Char || column.type == ColumnType::NChar;
    const QString whole = padded ? text.leftJustified(column.size) : text;
    return isWide(column.type) ? utf16Bytes(whole) : narrow(column, whole);
}

QByteArray valueBytes(const Column &column, const QString &text)
{
    switch (column.type) {
    case ColumnType::Bit:
    case ColumnType::TinyInt:
    case ColumnType::SmallInt:
    case ColumnType::Int:
    case ColumnType::BigInt:
        return whole(column, text, wireType(column.type).length);
    case ColumnType::Real:
    case ColumnType::Float:
        return real(column, text);
    case ColumnType::SmallMoney:
    case ColumnType::Money:
        return money(column, text);
    case ColumnType::Decimal:
        return decimal(column, text);
    case ColumnType::SmallDateTime:
        return smallDateTime(moment(column, text));
    case ColumnType::DateTime:
        return dateTime(moment(column, text));
    case ColumnType::DateTime2: {
        const Moment m = moment(column, text);
        return timeBytes(m, column.scale) + dateBytes(m);
    }
    case ColumnType::Date:
        return dateBytes(moment(column, text));
    case ColumnType::Time:
        return timeBytes(moment(column, text), column.scale);
    case ColumnType::DateTimeOffset:
        return offsetBytes(moment(column, text), column.scale);
    case ColumnType::UniqueIdentifier:
        return guid(column, text);
    case ColumnType::VarBinary:
    case ColumnType::VarBinaryMax:
    case ColumnType::Image:
        return QByteArray::fromHex(text.toLatin1());
    default:
        return textBytes(column, text);
    }
}

void writeChunks(WireWriter &out, QByteArrayView bytes)
{
    out.integer(quint64(bytes.size()), 8);
    while (!bytes.isEmpty()) {
        const QByteArrayView chunk = bytes.first(std::min(kChunkSize, bytes.size()));
        out.integer(quint64(chunk.size()), 4).bytes(chunk);
        bytes = bytes.sliced(chunk.size());
    }
    out.integer(0, 4);
}

void writePointed(WireWriter &out, QByteArrayView bytes)
{
    constexpr int kPointerSize = 16;
    constexpr int kTimeStampSize = 8;
    out.byte(kPointerSize).bytes(QByteArray(kPointerSize + kTimeStampSize, 'p'));
    out.integer(quint64(bytes.size()), 4).bytes(bytes);
}

void writeNull(WireWriter &out, Framing framing)
{
    constexpr auto kAllOnes = ~quint64(0);
    const bool isZero = framing == Framing::Byte || framing == Framing::Pointer;
    out.integer(isZero ? 0 : kAllOnes, isZero ? 1 : framing == Framing::Word ? 2 : 8);
}

} // namespace

bool namesItsTable(ColumnType type)
{
    return wireType(type).framing == Framing::Pointer;
}

void writeTypeInfo(WireWriter &out, const Column &column)
{
    const WireType &wire = wireType(column.type);
    out.byte(wire.token);
    switch (column.type) {
    case ColumnType::Date:
        break;
    case ColumnType::Time:
    case ColumnType::DateTime2:
    case ColumnType::DateTimeOffset:
        out.byte(column.scale);
        break;
    case ColumnType::Decimal:
        out.byte(1 + decimalBytes(column.size)).byte(column.size).byte(column.scale);
        break;
    case ColumnType::Xml:
        out.byte(0); // no schema
        break;
    default:
        if (wire.framing == Framing::Byte)
            out.byte(wire.length);
        else if (wire.framing == Framing::Pointer)
            out.integer(kLongest, 4);
        else
            out.integer(
                quint64(wire.length ? wire.length : column.size * (isWide(column.type) ? 2 : 1)),
                2);
    }
    if (wire.collated)
        out.bytes(kCollation);
}

void writeValue(WireWriter &out, const Column &column, const Cell &cell)
{
    const Framing framing = wireType(column.type).framing;
    if (!cell)
        return writeNull(out, framing);
    const QByteArray bytes = valueBytes(column, *cell);
    switch (framing) {
    case Framing::Byte:
        out.byte(int(bytes.size())).bytes(bytes);
        break;
    case Framing::Word:
        out.integer(quint64(bytes.size()), 2).bytes(bytes);
        break;
    case Framing::Chunks:
        writeChunks(out, bytes);
        break;
    case Framing::Pointer:
        writePointed(out, bytes);
        break;
    }
}

} // namespace corvane::test::tds

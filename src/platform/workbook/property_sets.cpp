#include "platform/workbook/property_sets.h"

#include "platform/workbook/workbook_writer.h"

#include <QtCore/QtEndian>

namespace corvane {

namespace {

// Property identifiers ([MS-OSHARED] PIDSI and PIDDSI) and value types ([MS-OLEPS] PropertyType).
enum Property : quint32 {
    CodePage = 1,
    Title = 2,
    Author = 4,
    Created = 12,
    Saved = 13,
    Application = 18,
    ScaleCrop = 11,
    LinksDirty = 16
};
enum ValueType : quint32 { Int16 = 2, Boolean = 11, String = 30, FileTime = 64 };

constexpr quint32 kUtf8 = 65'001;
/// FMTID_SummaryInformation and FMTID_DocSummaryInformation as they stand in the file.
constexpr char kSummaryFormat[]
    = "\xE0\x85\x9F\xF2\xF9\x4F\x68\x10\xAB\x91\x08\x00\x2B\x27\xB3\xD9";
constexpr char kDocumentFormat[]
    = "\x02\xD5\xCD\xD5\x9C\x2E\x1B\x10\x93\x97\x08\x00\x2B\x2C\xF9\xAE";

template <typename Number> void append(QByteArray &out, Number number)
{
    char bytes[sizeof number];
    qToLittleEndian(number, bytes);
    out.append(bytes, qsizetype(sizeof bytes));
}

/// [MS-OLEPS] PropertySet, under construction; properties in the order of their identifiers.
class PropertySet
{
public:
    PropertySet() { number(CodePage, Int16, kUtf8); }

    void number(Property property, ValueType type, quint32 value)
    {
        start(property, type);
        append(m_values, value);
    }

    void text(Property property, const QString &value)
    {
        if (value.isEmpty())
            return;
        start(property, String);
        const QByteArray utf8 = value.toUtf8() + '\0';
        append(m_values, quint32(utf8.size()));
        m_values += utf8;
        while (m_values.size() % 4 != 0)
            m_values += '\0';
    }

    /// As 100 nanoseconds since the first day of 1601, UTC.
    void time(Property property, const QDateTime &value)
    {
        if (!value.isValid())
            return;
        constexpr qint64 kFrom1601 = 11'644'473'600'000;
        start(property, FileTime);
        append(m_values, quint64(value.toMSecsSinceEpoch() + kFrom1601) * 10'000);
    }

    /// [MS-OLEPS] PropertySetStream with this one set.
    QByteArray stream(const char *format) const
    {
        constexpr quint32 kHeader = 48;
        constexpr quint32 kWindows = 0x0002'0006;
        QByteArray out;
        append(out, quint16(0xFFFE));
        append(out, quint16(0));
        append(out, kWindows);
        out.append(16, '\0'); // class identifier
        append(out, quint32(1));
        out.append(format, 16);
        append(out, kHeader);
        const auto directory = quint32(8 + 8 * m_offsets.size());
        append(out, directory + quint32(m_values.size()));
        append(out, quint32(m_offsets.size()));
        for (const auto &[property, offset] : m_offsets) {
            append(out, quint32(property));
            append(out, directory + offset);
        }
        return out + m_values;
    }

private:
    void start(Property property, ValueType type)
    {
        m_offsets.push_back({property, quint32(m_values.size())});
        append(m_values, quint32(type));
    }

    std::vector<std::pair<Property, quint32>> m_offsets;
    QByteArray m_values;
};

} // namespace

QByteArray summaryInformation(const WorkbookOptions &options)
{
    PropertySet set;
    set.text(Title, options.title);
    set.text(Author, options.author);
    set.time(Created, options.writtenAt);
    set.time(Saved, options.writtenAt);
    set.text(Application, options.application);
    return set.stream(kSummaryFormat);
}

QByteArray documentSummaryInformation()
{
    PropertySet set;
    set.number(ScaleCrop, Boolean, 0);
    set.number(LinksDirty, Boolean, 0);
    return set.stream(kDocumentFormat);
}

} // namespace corvane

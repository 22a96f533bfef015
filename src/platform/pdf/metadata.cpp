#include "platform/pdf/metadata.h"

#include <QtCore/QXmlStreamWriter>

#include <cstdlib>

namespace corvane {

namespace {

using Object = QPDFObjectHandle;

const QString kRdf = QStringLiteral("http://www.w3.org/1999/02/22-rdf-syntax-ns#");
const QString kDublinCore = QStringLiteral("http://purl.org/dc/elements/1.1/");
const QString kXmp = QStringLiteral("http://ns.adobe.com/xap/1.0/");
const QString kPdf = QStringLiteral("http://ns.adobe.com/pdf/1.3/");
const QString kOwn = QStringLiteral("urn:corvane-reporter:report");

/// The program alone: "Corvane Reporter 1.0" without its number.
QString creatorOf(const QString &producer)
{
    const qsizetype blank = producer.lastIndexOf(u' ');
    const bool endsInNumber = blank > 0 && blank + 1 < producer.size() && producer[blank + 1].isDigit();
    return endsInNumber ? producer.first(blank) : producer;
}

/// What the report is and which days it covers.
QString subjectOf(const DocumentInfo &info)
{
    if (info.report.isEmpty() || info.dateRange.isEmpty())
        return QString(info.report + info.dateRange);
    return QString(info.report + QStringLiteral(", ") + info.dateRange);
}

/// A time as 7.9.4 writes it, with its distance from universal time.
QString pdfTime(const QDateTime &time)
{
    const int minutes = std::abs(time.offsetFromUtc()) / 60;
    const QChar sign = time.offsetFromUtc() < 0 ? u'-' : u'+';
    return QStringLiteral("D:%1%2%3'%4'")
        .arg(time.toString(u"yyyyMMddHHmmss"), sign)
        .arg(minutes / 60, 2, 10, QChar(u'0'))
        .arg(minutes % 60, 2, 10, QChar(u'0'));
}

/// XML has no word for control characters and the two that are none.
QString cleaned(QString text)
{
    for (QChar &c : text) {
        if (c.unicode() < 0x20 || c.unicode() >= 0xfffe)
            c = u' ';
    }
    return text;
}

struct OwnProperty {
    const char *infoKey;
    const char *xmpName;
    QString value;
};

/// What no standard key is for.
std::array<OwnProperty, 4> ownProperties(const FileDescription &file)
{
    return {OwnProperty {"/Report", "Definition", file.info.report},
        OwnProperty {"/DateRange", "DateRange", file.info.dateRange},
        OwnProperty {"/Complete", "Complete", file.isWhole ? QStringLiteral("yes") : QStringLiteral("no")},
        OwnProperty {"/Tagged", "Tagged", file.tagged}};
}

class XmpWriter
{
public:
    explicit XmpWriter(QByteArray *bytes)
        : m_xml(bytes)
    {
        m_xml.writeNamespace(QStringLiteral("adobe:ns:meta/"), QStringLiteral("x"));
        m_xml.writeNamespace(kRdf, QStringLiteral("rdf"));
        m_xml.writeNamespace(kDublinCore, QStringLiteral("dc"));
        m_xml.writeNamespace(kXmp, QStringLiteral("xmp"));
        m_xml.writeNamespace(kPdf, QStringLiteral("pdf"));
        m_xml.writeNamespace(kOwn, QStringLiteral("report"));
        m_xml.writeStartElement(QStringLiteral("adobe:ns:meta/"), QStringLiteral("xmpmeta"));
        m_xml.writeStartElement(kRdf, QStringLiteral("RDF"));
        m_xml.writeStartElement(kRdf, QStringLiteral("Description"));
        m_xml.writeAttribute(kRdf, QStringLiteral("about"), QString());
    }

    void property(const QString &space, const QString &name, const QString &value)
    {
        if (!value.isEmpty())
            m_xml.writeTextElement(space, name, cleaned(value));
    }

    /// A property that holds a list: "Alt" by language, "Seq" in order, "Bag" without one.
    void list(const QString &name, const QString &kind, const QString &value)
    {
        if (value.isEmpty())
            return;
        m_xml.writeStartElement(kDublinCore, name);
        m_xml.writeStartElement(kRdf, kind);
        m_xml.writeStartElement(kRdf, QStringLiteral("li"));
        if (kind == u"Alt")
            m_xml.writeAttribute(QStringLiteral("xml:lang"), QStringLiteral("x-default"));
        m_xml.writeCharacters(cleaned(value));
        for (int i = 0; i < 3; ++i)
            m_xml.writeEndElement();
    }

    void finish()
    {
        for (int i = 0; i < 3; ++i)
            m_xml.writeEndElement();
    }

private:
    QXmlStreamWriter m_xml;
};

} // namespace

QPDFObjectHandle infoDictionary(QPDF &pdf, const FileDescription &file)
{
    const DocumentInfo &info = file.info;
    Object dictionary = Object::newDictionary();
    const auto set = [&](const char *key, const QString &value) {
        if (!value.isEmpty())
            dictionary.replaceKey(key, Object::newUnicodeString(value.toStdString()));
    };
    set("/Title", info.title);
    set("/Author", info.user);
    set("/Subject", subjectOf(info));
    set("/Creator", creatorOf(file.producer));
    set("/Producer", file.producer);
    for (const OwnProperty &own : ownProperties(file))
        set(own.infoKey, own.value);
    if (info.printedAt.isValid()) {
        set("/CreationDate", pdfTime(info.printedAt));
        set("/ModDate", pdfTime(info.printedAt));
    }
    return pdf.makeIndirectObject(dictionary);
}

QPDFObjectHandle metadataStream(QPDF &pdf, const FileDescription &file)
{
    const DocumentInfo &info = file.info;
    QByteArray xml;
    XmpWriter writer(&xml);
    writer.list(QStringLiteral("title"), QStringLiteral("Alt"), info.title);
    writer.list(QStringLiteral("creator"), QStringLiteral("Seq"), info.user);
    writer.list(QStringLiteral("description"), QStringLiteral("Alt"), subjectOf(info));
    writer.list(QStringLiteral("language"), QStringLiteral("Bag"), info.language);
    writer.property(kPdf, QStringLiteral("Producer"), file.producer);
    writer.property(kXmp, QStringLiteral("CreatorTool"), creatorOf(file.producer));
    for (const OwnProperty &own : ownProperties(file))
        writer.property(kOwn, QLatin1StringView(own.xmpName), own.value);
    if (info.printedAt.isValid()) {
        const QString time = info.printedAt.toOffsetFromUtc(info.printedAt.offsetFromUtc()).toString(Qt::ISODate);
        writer.property(kXmp, QStringLiteral("CreateDate"), time);
        writer.property(kXmp, QStringLiteral("ModifyDate"), time);
    }
    writer.finish();
    const std::string packet = "<?xpacket begin=\"\xef\xbb\xbf\" id=\"W5M0MpCehiHzreSzNTczkc9d\"?>\n"
        + xml.toStdString() + "\n<?xpacket end=\"w\"?>\n";
    Object stream = Object::newStream(&pdf, packet);
    stream.getDict().replaceKey("/Type", Object::newName("/Metadata"));
    stream.getDict().replaceKey("/Subtype", Object::newName("/XML"));
    return stream;
}

} // namespace corvane

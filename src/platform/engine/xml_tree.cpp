#include "platform/engine/xml_tree.h"

#include <QtCore/QStringList>
#include <QtCore/QXmlStreamReader>

#include <algorithm>

namespace corvane {

namespace {

constexpr size_t kMaxDepth = 100;
constexpr int kMaxElements = 20'000;

bool isBlank(QChar c)
{
    return c == u' ' || c == u'\t' || c == u'\r' || c == u'\n';
}

/// Reads one file into its tree. Qt's reader says where a token ends; where it starts and where an
/// attribute's value stands is found in the text, which is known to be well formed by then.
class TreeBuilder
{
public:
    explicit TreeBuilder(const ReportSource &source)
        : m_source(source)
        , m_reader(source.text())
    {
        // With namespaces on, "xmlns" would be swallowed without a word.
        m_reader.setNamespaceProcessing(false);
    }

    XmlElement build()
    {
        while (!m_reader.atEnd()) {
            const QXmlStreamReader::TokenType token = m_reader.readNext();
            take(token);
            m_tokenStart = m_reader.characterOffset();
        }
        if (m_reader.hasError())
            failMalformed();
        return std::move(m_root);
    }

private:
    void take(QXmlStreamReader::TokenType token)
    {
        switch (token) {
        case QXmlStreamReader::StartElement:
            return open();
        case QXmlStreamReader::EndElement:
            return close();
        case QXmlStreamReader::Characters:
            return addText();
        case QXmlStreamReader::DTD:
        case QXmlStreamReader::EntityReference:
            return m_source.fail(m_tokenStart,
                QStringLiteral("A report may hold no document type and no entities of its own. "
                               "Take <!DOCTYPE …> out."));
        default:
            return;
        }
    }

    void open()
    {
        XmlElement element;
        element.name = m_reader.qualifiedName().toString();
        // A text token swallows the "<" behind it.
        const QString &text = m_source.text();
        const bool isSwallowed = m_tokenStart > 0 && text[m_tokenStart - 1] == u'<';
        element.offset = isSwallowed ? m_tokenStart - 1 : text.indexOf(u'<', m_tokenStart);
        if (m_open.empty())
            checkRoot(element);
        if (m_open.size() == kMaxDepth)
            m_source.fail(
                element.offset, QStringLiteral("More than 100 elements stand in each other."));
        if (++m_count > kMaxElements)
            m_source.fail(
                element.offset, QStringLiteral("The file holds more than 20,000 elements."));
        addAttributes(element);
        m_open.push_back(std::move(element));
    }

    void checkRoot(const XmlElement &element) const
    {
        if (element.name != u"Reports") {
            m_source.fail(element.offset,
                QStringLiteral("The root of a designed report is <Reports>, not <%1>.")
                    .arg(element.name));
        }
        if (!m_reader.attributes().isEmpty())
            m_source.fail(
                element.offset, QStringLiteral("The root <Reports> takes no attributes."));
        const qsizetype declarationEnd = m_source.text().indexOf(u"?>") + 2;
        const QStringView before
            = QStringView(m_source.text()).sliced(declarationEnd, element.offset - declarationEnd);
        if (!std::ranges::all_of(before, isBlank)) {
            m_source.fail(declarationEnd,
                QStringLiteral("Only the XML declaration may stand before <Reports>. Move comments "
                               "behind it."));
        }
    }

    void addAttributes(XmlElement &element) const
    {
        const QString &text = m_source.text();
        const auto skipBlanks = [&](qsizetype at) {
            while (isBlank(text[at]))
                ++at;
            return at;
        };
        qsizetype at = element.offset + 1 + element.name.size();
        for (const QXmlStreamAttribute &read : m_reader.attributes()) {
            XmlAttribute attribute{
                read.qualifiedName().toString(), read.value().toString(), skipBlanks(at), 0};
            at = skipBlanks(attribute.nameOffset + attribute.name.size()); // at "="
            at = skipBlanks(at + 1);
            attribute.valueOffset = at + 1;
            at = text.indexOf(text[at], at + 1) + 1;
            element.attributes.push_back(std::move(attribute));
        }
    }

    void close()
    {
        XmlElement element = std::move(m_open.back());
        m_open.pop_back();
        (m_open.empty() ? m_root : m_open.back().children.emplace_back()) = std::move(element);
    }

    void addText()
    {
        if (m_open.empty())
            return;
        XmlElement &element = m_open.back();
        if (element.textOffset < 0 && !m_reader.isWhitespace()) {
            const qsizetype start = m_reader.isCDATA()
                ? m_source.text().indexOf(u'[', m_tokenStart + 3) + 1
                : m_tokenStart;
            const QStringView raw = QStringView(m_source.text()).sliced(start);
            element.textOffset = start + (std::ranges::find_if_not(raw, isBlank) - raw.begin());
        }
        element.text += m_reader.text();
    }

    [[noreturn]] void failMalformed() const
    {
        QString inside;
        if (!m_open.empty()) {
            inside = QStringLiteral(" It stands in <%1>, which starts in line %2.")
                         .arg(m_open.back().name)
                         .arg(m_source.placeOf(m_open.back().offset).line);
        }
        QString reason = m_reader.errorString();
        if (reason.endsWith(u'.'))
            reason.chop(1);
        m_source.fail(m_reader.characterOffset(),
            QStringLiteral("This is not well-formed XML: %1.").arg(reason) % inside);
    }

    const ReportSource &m_source;
    QXmlStreamReader m_reader;
    qsizetype m_tokenStart = 0;
    int m_count = 0;
    std::vector<XmlElement> m_open;
    XmlElement m_root;
};

} // namespace

const XmlAttribute *XmlElement::attribute(QStringView attributeName) const
{
    const auto found = std::ranges::find(attributes, attributeName, &XmlAttribute::name);
    return found == attributes.end() ? nullptr : &*found;
}

XmlElement readXmlTree(const ReportSource &source)
{
    return TreeBuilder(source).build();
}

QStringList readReportNames(const ReportSource &source)
{
    QStringList names;
    QXmlStreamReader reader(source.text());
    reader.setNamespaceProcessing(false);
    if (!reader.readNextStartElement())
        return names;
    while (reader.readNextStartElement()) {
        if (reader.qualifiedName() == u"Report"
            && reader.attributes().hasAttribute(QStringLiteral("name")))
            names += reader.attributes().value(QStringLiteral("name")).toString();
        reader.skipCurrentElement();
    }
    return names;
}

qsizetype offsetInValue(const ReportSource &source, const XmlAttribute &attribute, qsizetype unit)
{
    const QString &text = source.text();
    qsizetype at = attribute.valueOffset;
    for (qsizetype done = 0; done < unit && done < attribute.value.size();) {
        const bool isReference = text[at] == u'&';
        const bool isPair = isReference && attribute.value[done].isHighSurrogate();
        const bool isLineEnd = text[at] == u'\r' && text[at + 1] == u'\n';
        at = (isReference ? text.indexOf(u';', at) : at) + (isLineEnd ? 2 : 1);
        done += isPair ? 2 : 1;
    }
    return at;
}

} // namespace corvane

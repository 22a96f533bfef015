#pragma once

#include <QtCore/QFile>
#include <QtCore/QMap>
#include <QtCore/QSet>
#include <QtCore/QStringList>
#include <QtCore/QXmlStreamReader>

namespace corvane::test {

/// What the schema says: elements with their attributes, and of attributes with a fixed choice the
/// words.
struct Schema
{
    QMap<QString, QSet<QString>> attributes;
    QMap<QString, QStringList> words; ///< by "Element attribute"
};

/// Reads what this schema makes use of: global elements and types, attribute groups in one another.
class SchemaReader
{
public:
    Schema read()
    {
        QFile file(QStringLiteral(CORVANE_SOURCE_DIR "/docs/designed-reports.xsd"));
        if (!file.open(QIODevice::ReadOnly))
            return {};
        QXmlStreamReader xml(&file);
        while (!xml.atEnd()) {
            if (xml.readNext() == QXmlStreamReader::StartElement)
                take(xml.name(), xml.attributes());
        }
        Schema schema;
        for (auto element = m_elements.cbegin(); element != m_elements.cend(); ++element)
            collect(element.key(), element.value(), schema);
        return schema;
    }

private:
    struct Attribute
    {
        QString name;
        QString type;
        QStringList words;
    };
    struct Holder
    {
        QList<Attribute> attributes;
        QStringList groups;
    };

    void take(QStringView tag, const QXmlStreamAttributes &attributes)
    {
        const QString name = attributes.value(QStringLiteral("name")).toString();
        if (tag == u"element" && !name.isEmpty())
            m_open = &m_elements[name];
        else if (tag == u"attributeGroup" && !name.isEmpty())
            m_open = &m_groups[name];
        else if (tag == u"attributeGroup")
            m_open->groups += attributes.value(QStringLiteral("ref")).toString();
        else if (tag == u"simpleType" && !name.isEmpty())
            m_words = &m_types[name];
        else if (tag == u"enumeration")
            *m_words += attributes.value(QStringLiteral("value")).toString();
        else if (tag == u"attribute") {
            m_open->attributes
                += Attribute{name, attributes.value(QStringLiteral("type")).toString(), {}};
            m_words = &m_open->attributes.last().words;
        }
    }

    void collect(const QString &element, const Holder &holder, Schema &schema) const
    {
        schema.attributes[element]; // there even without attributes
        for (const Attribute &attribute : holder.attributes) {
            schema.attributes[element] += attribute.name;
            const QStringList words = attribute.words + m_types.value(attribute.type);
            if (words.size() > 1)
                schema.words[element + u' ' + attribute.name] = words;
        }
        for (const QString &group : holder.groups)
            collect(element, m_groups[group], schema);
    }

    QMap<QString, Holder> m_elements;
    QMap<QString, Holder> m_groups;
    QMap<QString, QStringList> m_types;
    Holder *m_open = nullptr;
    QStringList *m_words = nullptr;
};

} // namespace corvane::test

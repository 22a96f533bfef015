#include "platform/engine/section_reader.h"

#include "platform/engine/field_reader.h"
#include "platform/engine/layout_expression.h"
#include "platform/engine/suggestion.h"
#include "platform/engine/page_reader.h"

#include <QtCore/QSet>
#include <QtCore/QStringList>

#include <algorithm>

namespace corvane {

namespace {

constexpr QStringView kKinds[] = {u"report-header", u"page-header", u"group-header", u"detail",
    u"group-footer", u"page-footer", u"report-footer"};
constexpr QStringView kNewPages[] = {u"none", u"before", u"after", u"both"};

bool isOfGroup(SectionKind kind)
{
    return kind == SectionKind::GroupHeader || kind == SectionKind::GroupFooter;
}

bool isOfPage(SectionKind kind)
{
    return kind == SectionKind::PageHeader || kind == SectionKind::PageFooter;
}

/// To the hundredth of an inch, rounded up: what is written must be enough.
QString inches(Twips length)
{
    const qint32 hundredths = (length.count() * 10 + 143) / 144;
    return QString(QString::number(hundredths / 100.0) + QStringLiteral("in"));
}

class SectionReader
{
public:
    SectionReader(const ReportSource &source, const StyleSheet &styles, ReportLayout &layout)
        : m_source(source)
        , m_styles(styles)
        , m_layout(layout)
    {
    }

    void add(const XmlElement &element)
    {
        const AttributeReader reader(m_source, element);
        Section section;
        section.place = m_source.placeOf(element.offset);
        section.kind = SectionKind(reader.choice("kind", kKinds));
        section.group = groupOf(reader, section.kind);
        if (m_layout.findSection(section.kind, section.group)) {
            reader.fail("kind", QStringLiteral("there is one already; put these fields into it."));
        }
        section.height = *reader.length("height");
        if (isOfPage(section.kind))
            refuseFlow(reader);
        section.keepTogether = reader.flag("keepTogether").value_or(true);
        readNewPage(reader, section.newPageBefore, section.newPageAfter);
        section.visibleWhen = readExpression(reader, "visibleWhen", m_layout.groups);
        section.background = reader.colour("background");
        for (const XmlElement &field : element.children)
            section.fields.push_back(readPlaced(field, section));
        m_layout.sections.push_back(std::move(section));
        checkRoom(reader);
    }

private:
    int groupOf(const AttributeReader &reader, SectionKind kind) const
    {
        if (!isOfGroup(kind)) {
            if (reader.has("group"))
                reader.fail("group",
                    QStringLiteral("only headers and footers of groups belong to a group."));
            return -1;
        }
        if (!reader.has("group"))
            reader.fail("kind",
                QStringLiteral("it needs the attribute \"group\" with the name of its group."));
        const QString name = reader.text("group");
        const Group *group = m_layout.findGroup(name);
        if (!group) {
            QStringList names;
            for (const Group &known : m_layout.groups)
                names += known.name;
            reader.fail(
                "group", QString(u"there is no such group in <Groups>" % suggestion(name, names)));
        }
        return int(group - m_layout.groups.data());
    }

    static void refuseFlow(const AttributeReader &reader)
    {
        for (const char *name : {"keepTogether", "newPage"}) {
            if (reader.has(name))
                reader.fail(name,
                    QStringLiteral("headers and footers of pages stand where they are and take no "
                                   "such thing."));
        }
    }

    Field readPlaced(const XmlElement &element, const Section &section)
    {
        Field field = readField(m_source, element, m_styles, m_layout.groups);
        checkName(element, field);
        const Twips width = sectionWidth(m_layout.page, section.kind);
        if (field.x + field.width > width) {
            m_source.fail(element.offset,
                QStringLiteral(
                    "<%1> reaches to %2 from the left margin, but the section is only %3 wide.")
                    .arg(element.name, inches(field.x + field.width), inches(width)));
        }
        if (field.y + field.height > section.height) {
            m_source.fail(element.offset,
                QStringLiteral("<%1> reaches down to %2, but the section is only %3 high.")
                    .arg(element.name, inches(field.y + field.height), inches(section.height)));
        }
        return field;
    }

    /// Several placeholders may show the same sub-report.
    void checkName(const XmlElement &element, const Field &field)
    {
        if (field.name.isEmpty() || field.kind == FieldKind::Subreport)
            return;
        if (m_names.contains(field.name)) {
            AttributeReader(m_source, element)
                .fail("name", QStringLiteral("this name is taken by another field of the report."));
        }
        m_names.insert(field.name);
    }

    void checkRoom(const AttributeReader &reader) const
    {
        Twips taken;
        for (const Section &section : m_layout.sections)
            taken += isOfPage(section.kind) ? section.height : Twips();
        if (taken >= bodyHeight(m_layout.page)) {
            reader.fail("height",
                QStringLiteral(
                    "header and footer of the page leave no room for rows; together they "
                    "must be less than %1 high.")
                    .arg(inches(bodyHeight(m_layout.page))));
        }
    }

    const ReportSource &m_source;
    const StyleSheet &m_styles;
    ReportLayout &m_layout;
    QSet<QString> m_names;
};

} // namespace

void readNewPage(const AttributeReader &reader, bool &before, bool &after)
{
    const int word = std::max(0, reader.choice("newPage", kNewPages));
    before = word == 1 || word == 3;
    after = word == 2 || word == 3;
}

void readSections(const ReportSource &source, const XmlElement &report, const StyleSheet &styles,
    ReportLayout &layout)
{
    SectionReader sections(source, styles, layout);
    for (const XmlElement &child : report.children) {
        if (child.name == u"Section")
            sections.add(child);
    }
    if (layout.sections.empty())
        source.fail(report.offset,
            QStringLiteral("<Report> holds no <Section>; nothing would be printed."));
}

} // namespace corvane

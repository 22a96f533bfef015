#include "platform/engine/element_table.h"

#include "platform/engine/suggestion.h"

#include <QtCore/QMap>

#include <algorithm>

namespace corvane {

namespace {

/// Attributes that several elements share; an element names its sets by bits.
enum AttributeSet : unsigned {
    Placing = 1,
    Sizing = 2,
    Styled = 4,
    Ink = 8,
    Framing = 16,
    Padding = 32,
    Lettering = 64,
    Formatted = 128,
    Growing = 256,
    Leading = 512
};

struct SharedSet
{
    unsigned bit;
    const char *attributes;
};

constexpr SharedSet kSharedSets[] = {
    {Placing, "name x y width height visibleWhen"},
    {Styled, "style"},
    {Ink, "color"},
    {Framing, "background border borderLeft borderTop borderRight borderBottom borderColor"},
    {Padding, "padding"},
    {Lettering, "font size bold italic underline align verticalAlign"},
    {Formatted, "format"},
    {Growing, "canGrow canShrink"},
    {Leading, "link bookmark"},
};

constexpr unsigned kLook = Ink | Framing | Padding | Lettering;
constexpr unsigned kText = Placing | Sizing | Styled | kLook | Growing | Leading;

/// "!" behind a name: it must be there. Behind a child: once at most. "=" before the first child:
/// the order counts.
struct ElementRow
{
    const char *name;
    unsigned sets;
    const char *attributes;
    const char *children;
    bool hasText = false;
};

constexpr ElementRow kElements[] = {
    {"Reports", 0, "", "Report"},
    {"Report", 0, "name! title", "= Page! Styles! RecordSource! Groups! Section"},
    {"Page", 0, "paper width height orientation left top right bottom columns columnGap", ""},
    {"Styles", 0, "", "Style"},
    {"Style", kLook | Formatted, "name! basedOn", ""},
    {"RecordSource", 0, "", "", true},
    {"Groups", 0, "", "Group"},
    {"Group", 0, "name! on! sort keepTogether newPage resetPageNumber repeatHeader outline", ""},
    {"Section", 0, "kind! group height! keepTogether newPage visibleWhen background",
        "Label Data Expression Line Rectangle Picture Barcode CheckMark Subreport"},
    {"Label", kText, "text!", "When"},
    {"Data", kText | Formatted, "column! hideDuplicates", "When"},
    {"Expression", kText | Formatted, "value! hideDuplicates", "When"},
    {"Line", Placing | Styled | Ink, "thickness", "When"},
    {"Rectangle", Placing | Sizing | Styled | Framing, "", "When"},
    {"Picture", Placing | Sizing | Styled | Framing | Padding | Leading,
        "file column description fit", "When", true},
    {"Barcode", Placing | Sizing | Styled | Framing | Padding | Ink, "type! value! showText",
        "When"},
    {"CheckMark", Placing | Sizing | Styled | Framing | Padding | Ink, "value!", "When"},
    {"Subreport", Placing | Sizing | Growing, "report", "Link"},
    {"When", 0, "condition! style!", ""},
    {"Link", 0, "name! value!", ""},
};

ElementRule ruleOf(const ElementRow &row)
{
    ElementRule rule;
    rule.hasText = row.hasText;
    QString attributes = QString::fromLatin1(row.attributes);
    for (const SharedSet &set : kSharedSets) {
        if (row.sets & set.bit)
            attributes += u' ' + QString::fromLatin1(set.attributes);
    }
    for (QString name : attributes.split(u' ', Qt::SkipEmptyParts)) {
        if (name.endsWith(u'!')) {
            name.chop(1);
            rule.required += name;
        }
        rule.attributes += name;
    }
    if (row.sets & Sizing)
        rule.required += {QStringLiteral("width"), QStringLiteral("height")};
    for (QString name : QString::fromLatin1(row.children).split(u' ', Qt::SkipEmptyParts)) {
        if (name == u"=") {
            rule.isOrdered = true;
            continue;
        }
        if (name.endsWith(u'!')) {
            name.chop(1);
            rule.single += name;
        }
        rule.children += name;
    }
    return rule;
}

const QMap<QString, ElementRule> &rules()
{
    static const QMap<QString, ElementRule> all = [] {
        QMap<QString, ElementRule> made;
        for (const ElementRow &row : kElements)
            made.insert(QString::fromLatin1(row.name), ruleOf(row));
        return made;
    }();
    return all;
}

void checkAttributes(const ReportSource &source, const XmlElement &element, const ElementRule &rule)
{
    for (const XmlAttribute &attribute : element.attributes) {
        if (!rule.attributes.contains(attribute.name)) {
            source.fail(attribute.nameOffset,
                QString(QStringLiteral("unknown attribute \"%1\" of <%2>")
                            .arg(attribute.name, element.name)
                    % suggestion(attribute.name, rule.attributes)));
        }
    }
    for (const QString &name : rule.required) {
        if (!element.attribute(name)) {
            source.fail(element.offset,
                QStringLiteral("<%1> lacks the attribute \"%2\".").arg(element.name, name));
        }
    }
}

void checkChildOrder(const ReportSource &source, const XmlElement &element, const ElementRule &rule)
{
    qsizetype reached = 0;
    for (const XmlElement &child : element.children) {
        const qsizetype position = rule.children.indexOf(child.name);
        if (position < reached) {
            source.fail(child.offset,
                QStringLiteral("<%1> stands too late in <%2>; the order is <%3>.")
                    .arg(child.name, element.name, rule.children.join(QStringLiteral(">, <"))));
        }
        reached = position;
    }
}

void checkChildren(const ReportSource &source, const XmlElement &element, const ElementRule &rule)
{
    QStringList seen;
    for (const XmlElement &child : element.children) {
        if (!rule.children.contains(child.name)) {
            source.fail(child.offset,
                QString(QStringLiteral("unknown element <%1> in <%2>").arg(child.name, element.name)
                    % suggestion(child.name, rule.children)));
        }
        if (rule.single.contains(child.name) && seen.contains(child.name)) {
            source.fail(child.offset,
                QStringLiteral("<%1> may stand in <%2> only once.").arg(child.name, element.name));
        }
        seen += child.name;
    }
    if (rule.isOrdered)
        checkChildOrder(source, element, rule);
}

} // namespace

const ElementRule *elementRule(const QString &name)
{
    const auto found = rules().constFind(name);
    return found == rules().cend() ? nullptr : &*found;
}

QStringList elementNames()
{
    return rules().keys();
}

void checkStructure(const ReportSource &source, const XmlElement &element)
{
    const ElementRule &rule = *elementRule(element.name);
    checkAttributes(source, element, rule);
    checkChildren(source, element, rule);
    if (!rule.hasText && element.textOffset >= 0)
        source.fail(element.textOffset, QStringLiteral("<%1> holds no text.").arg(element.name));
    for (const XmlElement &child : element.children)
        checkStructure(source, child);
}

} // namespace corvane

#include "platform/engine/style_sheet.h"

#include "platform/engine/suggestion.h"

#include <QtCore/QStringList>

namespace corvane {

namespace {

constexpr qsizetype kMaxChain = 20;
constexpr QStringView kHorizontal[] = {u"left", u"center", u"right"};
constexpr QStringView kVertical[] = {u"top", u"middle", u"bottom"};

template <typename T> void assign(T &target, const std::optional<T> &value)
{
    if (value)
        target = *value;
}

void setBackground(const AttributeReader &reader, const char *name, FieldLook &look)
{
    if (reader.text(name) == u"none")
        look.background.reset();
    else
        look.background = reader.colour(name);
}

void setBorder(const AttributeReader &reader, const char *name, FieldLook &look)
{
    const Twips width = *reader.length(name);
    look.border = {width, width, width, width, look.border.colour};
}

/// How each attribute changes a look, in this order: "border" comes before the single sides.
struct LookAttribute
{
    const char *name;
    void (*set)(const AttributeReader &reader, const char *name, FieldLook &look);
};

constexpr LookAttribute kLookAttributes[] = {
    {"font", [](const auto &reader, auto name, FieldLook &look) { look.font = reader.name(name); }},
    {"size",
        [](const auto &reader, auto name, FieldLook &look) {
            assign(look.points, reader.number(name, 1, 400));
        }},
    {"bold",
        [](const auto &reader, auto name, FieldLook &look) {
            assign(look.bold, reader.flag(name));
        }},
    {"italic",
        [](const auto &reader, auto name, FieldLook &look) {
            assign(look.italic, reader.flag(name));
        }},
    {"underline",
        [](const auto &reader, auto name, FieldLook &look) {
            assign(look.underline, reader.flag(name));
        }},
    {"color",
        [](const auto &reader, auto name, FieldLook &look) {
            assign(look.colour, reader.colour(name));
        }},
    {"background", setBackground},
    {"align",
        [](const auto &reader, auto name, FieldLook &look) {
            look.horizontal = HorizontalAlignment(reader.choice(name, kHorizontal));
        }},
    {"verticalAlign",
        [](const auto &reader, auto name, FieldLook &look) {
            look.vertical = VerticalAlignment(reader.choice(name, kVertical));
        }},
    {"border", setBorder},
    {"borderLeft",
        [](const auto &reader, auto name, FieldLook &look) {
            look.border.left = *reader.length(name);
        }},
    {"borderTop",
        [](const auto &reader, auto name, FieldLook &look) {
            look.border.top = *reader.length(name);
        }},
    {"borderRight",
        [](const auto &reader, auto name, FieldLook &look) {
            look.border.right = *reader.length(name);
        }},
    {"borderBottom",
        [](const auto &reader, auto name, FieldLook &look) {
            look.border.bottom = *reader.length(name);
        }},
    {"borderColor",
        [](const auto &reader, auto name, FieldLook &look) {
            assign(look.border.colour, reader.colour(name));
        }},
    {"padding",
        [](const auto &reader, auto name, FieldLook &look) {
            look.padding = *reader.length(name);
        }},
    {"format",
        [](const auto &reader, auto name, FieldLook &look) { look.format = reader.format(name); }},
};

} // namespace

StyleSheet::StyleSheet(const ReportSource &source, const XmlElement *styles)
    : m_source(source)
{
    if (!styles)
        return;
    for (const XmlElement &style : styles->children) {
        const AttributeReader reader(m_source, style);
        const QString name = reader.name("name");
        if (m_styles.contains(name))
            reader.fail("name", QStringLiteral("this name is taken by another style."));
        m_styles.insert(name, &style);
    }
    for (const XmlElement &style : styles->children) {
        checkCircle(style);
        FieldLook unused;
        applyOwn(style, unused);
    }
}

void StyleSheet::applyStyle(const XmlElement &user, FieldLook &look) const
{
    if (user.attribute(u"style"))
        apply(find(user, "style"), look);
}

void StyleSheet::applyOwn(const XmlElement &user, FieldLook &look) const
{
    const AttributeReader reader(m_source, user);
    for (const LookAttribute &attribute : kLookAttributes) {
        if (reader.has(attribute.name))
            attribute.set(reader, attribute.name, look);
    }
}

void StyleSheet::apply(const XmlElement &style, FieldLook &look) const
{
    std::vector<const XmlElement *> chain{&style};
    while (chain.back()->attribute(u"basedOn"))
        chain.push_back(&find(*chain.back(), "basedOn"));
    for (auto link = chain.rbegin(); link != chain.rend(); ++link)
        applyOwn(**link, look);
}

void StyleSheet::checkCircle(const XmlElement &style) const
{
    QStringList chain;
    for (const XmlElement *link = &style; link->attribute(u"basedOn");
         link = &find(*link, "basedOn")) {
        const QString name = link->attribute(u"name")->value;
        const bool isCircle = chain.contains(name);
        chain += name;
        if (chain.size() > kMaxChain) {
            AttributeReader(m_source, *link)
                .fail("basedOn",
                    QStringLiteral("more than 20 styles are based on each other in a row."));
        }
        if (isCircle) {
            AttributeReader(m_source, *link)
                .fail("basedOn",
                    QStringLiteral("these styles are based on each other: %1.")
                        .arg(chain.join(QStringLiteral(" → "))));
        }
    }
}

const XmlElement &StyleSheet::find(const XmlElement &user, const char *attribute) const
{
    const AttributeReader reader(m_source, user);
    const QString name = reader.text(attribute);
    if (const auto found = m_styles.constFind(name); found != m_styles.cend())
        return **found;
    QStringList names = m_styles.keys();
    names.sort();
    reader.fail(attribute, QString(u"there is no such style" % suggestion(name, names)));
}

} // namespace corvane

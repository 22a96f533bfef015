#include "engine/report_text.h"

#include <QtCore/QStringList>

namespace corvane::test {

namespace {

/// Collects "name=value" words; what has the value of a fresh object is left out.
class Words
{
public:
    explicit Words(const char *kind)
        : m_words(QString::fromLatin1(kind))
    {
    }

    void add(const char *name, const QString &value)
    {
        if (!value.isEmpty())
            m_words += QString::fromLatin1(name) + u'=' + value;
    }
    void add(const char *name, Twips value) { add(name, QString::number(value.count())); }
    void add(const char *name, int value) { add(name, QString::number(value)); }
    void add(const char *name, bool value)
    {
        add(name, value ? QStringLiteral("yes") : QStringLiteral("no"));
    }
    void add(const char *name, const ExpressionPtr &value)
    {
        if (value)
            add(name, QString(u'[' + value->columns().join(u' ') + u']'));
    }
    void addColour(const char *name, QRgb value)
    {
        add(name, QString::number(value & 0xffffff, 16));
    }

    QString line() const { return QString(m_words.join(u' ') + u'\n'); }

private:
    QStringList m_words;
};

void addLook(Words &words, const FieldLook &look)
{
    words.add("font", look.font);
    words.add("points", QString::number(look.points));
    words.add("bold", look.bold);
    words.add("italic", look.italic);
    words.add("underline", look.underline);
    words.addColour("colour", look.colour);
    if (look.background)
        words.addColour("background", *look.background);
    words.add("horizontal", int(look.horizontal));
    words.add("vertical", int(look.vertical));
    words.add("borderLeft", look.border.left);
    words.add("borderTop", look.border.top);
    words.add("borderRight", look.border.right);
    words.add("borderBottom", look.border.bottom);
    words.addColour("borderColour", look.border.colour);
    words.add("padding", look.padding);
    words.add("format", look.format);
}

QString fieldText(const Field &field)
{
    Words words("field");
    words.add("kind", int(field.kind));
    words.add("name", field.name);
    words.add("x", field.x);
    words.add("y", field.y);
    words.add("width", field.width);
    words.add("height", field.height);
    words.add("visibleWhen", field.visibleWhen);
    words.add("link", field.link);
    words.add("bookmark", field.bookmark);
    words.add("canGrow", field.canGrow);
    words.add("canShrink", field.canShrink);
    words.add("hideDuplicates", field.hideDuplicates);
    words.add("text", field.text);
    words.add("value", field.value);
    words.add("picture", int(field.picture.size()));
    words.add("fit", int(field.fit));
    words.add("description", field.description);
    words.add("barcode", int(field.barcode));
    words.add("showText", field.showText);
    for (const SubreportLink &link : field.links)
        words.add(qPrintable(QString(u"link-" + link.name)), link.value);
    words.add("layoutName", field.layoutName);
    addLook(words, field.look);
    QString text = words.line();
    for (const ConditionalLook &conditional : field.conditionalLooks) {
        Words when("when");
        when.add("condition", conditional.condition);
        addLook(when, conditional.look);
        text += when.line();
    }
    return text;
}

QString sectionText(const Section &section)
{
    Words words("section");
    words.add("kind", int(section.kind));
    words.add("group", section.group);
    words.add("height", section.height);
    words.add("keepTogether", section.keepTogether);
    words.add("newPageBefore", section.newPageBefore);
    words.add("newPageAfter", section.newPageAfter);
    if (section.background)
        words.addColour("background", *section.background);
    words.add("visibleWhen", section.visibleWhen);
    QString text = words.line();
    for (const Field &field : section.fields)
        text += fieldText(field);
    return text;
}

QString groupText(const Group &group)
{
    Words words("group");
    words.add("name", group.name);
    words.add("on", group.on);
    words.add("sort", int(group.sort));
    words.add("keepTogether", int(group.keepTogether));
    words.add("newPageBefore", group.newPageBefore);
    words.add("newPageAfter", group.newPageAfter);
    words.add("resetPageNumber", group.resetPageNumber);
    words.add("repeatHeader", group.repeatHeader);
    words.add("outline", group.outline);
    return words.line();
}

} // namespace

QString reportText(const ReportLayout &layout)
{
    Words words("report");
    words.add("name", layout.name);
    words.add("title", layout.title);
    words.add("recordSource", layout.recordSource);
    words.add("paperWidth", layout.page.paperWidth);
    words.add("paperHeight", layout.page.paperHeight);
    words.add("left", layout.page.left);
    words.add("top", layout.page.top);
    words.add("right", layout.page.right);
    words.add("bottom", layout.page.bottom);
    words.add("columns", layout.page.columns);
    words.add("columnGap", layout.page.columnGap);
    QString text = words.line();
    for (const Group &group : layout.groups)
        text += groupText(group);
    for (const Section &section : layout.sections)
        text += sectionText(section);
    return text;
}

} // namespace corvane::test

#include "platform/engine/layout_reader.h"

#include "platform/engine/element_table.h"
#include "platform/engine/layout_expression.h"
#include "platform/engine/suggestion.h"
#include "platform/engine/page_reader.h"
#include "platform/engine/section_reader.h"
#include "platform/engine/subreport_check.h"

#include <QtCore/QStringList>

#include <algorithm>

namespace corvane {

namespace {

constexpr QStringView kSortOrders[] = {u"none", u"ascending", u"descending"};
constexpr QStringView kKeepTogether[] = {u"no", u"first-detail", u"whole"};

const XmlElement *childOf(const XmlElement &element, QStringView name)
{
    const auto found = std::ranges::find(element.children, name, &XmlElement::name);
    return found == element.children.end() ? nullptr : &*found;
}

/// Holds what stands directly below the root against the rules, and finds the layout.
const XmlElement &findReport(
    const ReportSource &source, const XmlElement &root, const QString &wanted)
{
    QStringList names;
    const XmlElement *found = nullptr;
    for (const XmlElement &report : root.children) {
        const AttributeReader reader(source, report);
        if (report.name != u"Report")
            source.fail(report.offset,
                QStringLiteral("<Reports> holds only <Report>, not <%1>.").arg(report.name));
        if (!reader.has("name"))
            reader.fail(QStringLiteral("<Report> lacks the attribute \"name\"."));
        const QString name = reader.name("name").trimmed();
        if (names.contains(name))
            reader.fail(
                "name", QStringLiteral("this name is taken by another report of the file."));
        names += name;
        if (name == wanted.trimmed())
            found = &report;
    }
    if (root.textOffset >= 0)
        source.fail(root.textOffset, QStringLiteral("<Reports> holds no text."));
    if (names.isEmpty())
        source.fail(root.offset, QStringLiteral("The file holds no <Report>."));
    if (!found)
        source.fail(QString(QStringLiteral("There is no report \"%1\" in it").arg(wanted)
            % suggestion(wanted, names)));
    return *found;
}

Group readGroup(
    const ReportSource &source, const XmlElement &element, const std::vector<Group> &outer)
{
    const AttributeReader reader(source, element);
    Group group;
    group.place = source.placeOf(element.offset);
    group.name = reader.name("name");
    // Sums name their group without regard to case.
    if (std::ranges::any_of(outer, [&](const Group &other) {
            return other.name.compare(group.name, Qt::CaseInsensitive) == 0;
        }))
        reader.fail("name", QStringLiteral("this name is taken by another group."));
    group.on = readRowExpression(reader, "on");
    group.sort = SortOrder(std::max(0, reader.choice("sort", kSortOrders)));
    if (const int keep = reader.choice("keepTogether", kKeepTogether); keep >= 0)
        group.keepTogether = KeepTogether(keep);
    readNewPage(reader, group.newPageBefore, group.newPageAfter);
    group.resetPageNumber = reader.flag("resetPageNumber").value_or(false);
    group.repeatHeader = reader.flag("repeatHeader").value_or(false);
    group.outline = readRowExpression(reader, "outline");
    return group;
}

ReportLayout readReport(const ReportSource &source, const XmlElement &report)
{
    checkStructure(source, report);
    const AttributeReader reader(source, report);
    ReportLayout layout;
    layout.name = reader.text("name").trimmed();
    layout.title = reader.text("title");
    layout.page = readPage(source, childOf(report, u"Page"));
    const StyleSheet styles(source, childOf(report, u"Styles"));
    if (const XmlElement *recordSource = childOf(report, u"RecordSource"))
        layout.recordSource = recordSource->text.trimmed();
    if (const XmlElement *groups = childOf(report, u"Groups")) {
        for (const XmlElement &group : groups->children)
            layout.groups.push_back(readGroup(source, group, layout.groups));
    }
    readSections(source, report, styles, layout);
    return layout;
}

} // namespace

ReportLayout readLayout(const ReportSource &source, const XmlElement &root, const QString &name)
{
    const XmlElement &report = findReport(source, root, name);
    ReportLayout layout = readReport(source, report);
    for (const XmlElement *reached : reachedReports(source, root, report))
        readReport(source, *reached);
    return layout;
}

} // namespace corvane

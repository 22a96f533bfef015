#include "platform/engine/layout_plan.h"

#include "platform/engine/report_control.h"

#include <algorithm>

namespace corvane {

namespace {

bool isPageSection(const Section &section)
{
    return section.kind == SectionKind::PageHeader || section.kind == SectionKind::PageFooter;
}

bool hasText(const Field &field)
{
    return field.kind != FieldKind::Line && field.kind != FieldKind::Rectangle
        && field.kind != FieldKind::Picture && field.kind != FieldKind::Subreport;
}

BlockKind kindOf(const Section &section, bool isHeading, int columns)
{
    switch (section.kind) {
    case SectionKind::PageFooter:
        return BlockKind::Furniture;
    case SectionKind::PageHeader:
        return isHeading ? BlockKind::HeadingRow : BlockKind::Furniture;
    case SectionKind::GroupHeader:
        return isHeading ? BlockKind::HeadingRow : BlockKind::Caption;
    default:
        break;
    }
    return columns < 2                                     ? BlockKind::Paragraph
        : isHeading && section.kind != SectionKind::Detail ? BlockKind::HeadingRow
                                                           : BlockKind::Row;
}

int findColumn(const QStringList &names, const QString &name)
{
    for (int i = 0; i < int(names.size()); ++i) {
        if (name.compare(names[i], Qt::CaseInsensitive) == 0)
            return i;
    }
    return -1;
}

} // namespace

LayoutPlan::LayoutPlan(
    const ReportLayout &layout, const QStringList &fieldNames, TextLooks &looks, PlanFor use)
    : m_layout(&layout)
    , m_fieldNames(fieldNames)
    , m_use(use)
{
    for (int i = 0; i < groupCount(); ++i) {
        const Group &group = layout.groups[size_t(i)];
        if (group.on && !group.on->aggregates().empty()) {
            throw ReportError(QStringLiteral(
                "%1, line %2: the group \"%3\" cannot be formed by an aggregate, because "
                "aggregates are taken over groups.")
                                  .arg(layout.name)
                                  .arg(group.place.line)
                                  .arg(group.name));
        }
        m_groupKeys.push_back(bind(group.on, {i, false, group.place}));
        m_outlines.push_back(group.outline ? bind(group.outline, {i, false, group.place}) : -1);
    }
    m_sections.reserve(layout.sections.size());
    for (const Section &section : layout.sections)
        addSection(section, looks);
}

std::vector<const SectionPlan *> LayoutPlan::sectionsOf(SectionKind kind, int group) const
{
    std::vector<const SectionPlan *> found;
    for (const SectionPlan &plan : m_sections) {
        if (plan.section->kind == kind && (group < 0 || plan.section->group == group))
            found.push_back(&plan);
    }
    return found;
}

int LayoutPlan::bind(const ExpressionPtr &expression, const Scope &scope)
{
    if (!expression)
        return -1;
    Binding binding;
    binding.expression = expression;
    for (const QString &name : expression->columns()) {
        const int column = findColumn(m_fieldNames, name);
        if (column < 0) {
            throw ReportError(
                QStringLiteral("%1, line %2: the record source gives no column [%3]. It gives %4.")
                    .arg(m_layout->name)
                    .arg(scope.place.line)
                    .arg(name, m_fieldNames.join(QStringLiteral(", "))));
        }
        binding.columns.push_back(column);
    }
    if (expression->isPlainColumn())
        binding.plainColumn = binding.columns.front();
    binding.isOfPage = expression->uses(ReportVariable::PageNumber)
        || expression->uses(ReportVariable::PageCount);
    for (const Aggregate &aggregate : expression->aggregates()) {
        binding.aggregates.push_back(bindAggregate(aggregate, scope));
        binding.isOfPage = binding.isOfPage
            || m_aggregates[size_t(binding.aggregates.back())].level == kPageLevel;
    }
    m_bindings.push_back(std::move(binding));
    return int(m_bindings.size() - 1);
}

int LayoutPlan::bindAggregate(const Aggregate &aggregate, const Scope &scope)
{
    AggregatePlan plan;
    plan.function = aggregate.function;
    plan.level = levelOf(aggregate, scope);
    plan.isRunning = aggregate.isRunning;
    plan.followsPages = plan.level == kPageLevel || (plan.isRunning && scope.isPageSection);
    plan.argument = bind(aggregate.argument, scope);
    m_aggregates.push_back(plan);
    return int(m_aggregates.size() - 1);
}

int LayoutPlan::levelOf(const Aggregate &aggregate, const Scope &scope) const
{
    int level = scope.level;
    if (aggregate.scope == AggregateScope::Group) {
        for (int i = 0; i < groupCount(); ++i) {
            if (aggregate.group.compare(m_layout->groups[size_t(i)].name, Qt::CaseInsensitive) == 0)
                return i;
        }
        throw ReportError(QStringLiteral("%1, line %2: there is no group \"%3\".")
                              .arg(m_layout->name)
                              .arg(scope.place.line)
                              .arg(aggregate.group));
    }
    if (aggregate.scope == AggregateScope::Page)
        level = kPageLevel;
    else if (aggregate.scope == AggregateScope::Report)
        level = kReportLevel;
    // A sub-report's rows may stand on any number of pages: its page is all of it.
    return level == kPageLevel && m_use == PlanFor::Subreport ? kReportLevel : level;
}

void LayoutPlan::addSection(const Section &section, TextLooks &looks)
{
    const Scope scope{
        isPageSection(section) ? kPageLevel : section.group, isPageSection(section), section.place};
    SectionPlan plan;
    plan.section = &section;
    plan.height = section.height.count();
    plan.visibleWhen = bind(section.visibleWhen, scope);
    if (section.visibleWhen && section.visibleWhen->uses(ReportVariable::PageCount)) {
        throw ReportError(QStringLiteral(
            "%1, line %2: PageCount cannot decide whether a section shows, because the "
            "number of pages depends on it. Use it in the section's fields.")
                              .arg(m_layout->name)
                              .arg(section.place.line));
    }
    for (const Field &field : section.fields) {
        plan.fields.push_back(planField(field, scope, looks));
        plan.height = std::max(plan.height, plan.fields.back().bottom());
    }
    orderFields(plan);
    for (const FieldPlan &field : plan.fields) {
        const bool isLetters
            = (field.field->kind == FieldKind::Label || field.field->kind == FieldKind::Value);
        m_hasPageFields = m_hasPageFields || field.isOfPage;
        plan.isPlain = plan.isPlain && isLetters && field.conditionalLooks.empty()
            && field.visibleWhen < 0 && field.link < 0 && field.bookmark < 0 && !field.isOfPage
            && !field.field->canShrink && field.duplicateSlot < 0 && !field.look.hasFrame();
    }
    m_sections.push_back(std::move(plan));
}

FieldPlan LayoutPlan::planField(const Field &field, const Scope &section, TextLooks &looks)
{
    const Scope scope{section.level, section.isPageSection, field.place};
    FieldPlan plan;
    plan.field = &field;
    plan.look = looks.make(field.look, field.place);
    for (const ConditionalLook &conditional : field.conditionalLooks)
        plan.conditionalLooks.emplace_back(
            bind(conditional.condition, scope), looks.make(conditional.look, field.place));
    plan.value = bind(field.value, scope);
    plan.visibleWhen = bind(field.visibleWhen, scope);
    plan.link = bind(field.link, scope);
    plan.bookmark = bind(field.bookmark, scope);
    for (const SubreportLink &link : field.links)
        plan.links.push_back({link.name, bind(link.value, scope)});
    if (field.hideDuplicates)
        plan.duplicateSlot = m_duplicateSlots++;
    const auto isOfPage
        = [this](int binding) { return binding >= 0 && m_bindings[size_t(binding)].isOfPage; };
    plan.isOfPage = field.kind != FieldKind::Subreport
        && (isOfPage(plan.value) || isOfPage(plan.visibleWhen) || isOfPage(plan.link)
            || std::ranges::any_of(
                plan.conditionalLooks, [&](const auto &look) { return isOfPage(look.first); }));
    return plan;
}

/// Fields whose middle lies above the bottom of a line's first field read as one line, from left to
/// right.
void LayoutPlan::orderFields(SectionPlan &plan) const
{
    std::vector<FieldPlan> &fields = plan.fields;
    std::vector<const Field *> fileOrder;
    fileOrder.reserve(fields.size());
    for (const FieldPlan &field : fields)
        fileOrder.push_back(field.field);
    std::ranges::stable_sort(fields, {}, &FieldPlan::top);
    for (size_t begin = 0; begin < fields.size();) {
        size_t end = begin;
        const qint32 limit = fields[begin].bottom();
        do
            ++end;
        while (end < fields.size() && hasText(*fields[begin].field)
            && fields[end].top() + fields[end].bottom() < 2 * limit);
        const auto key = [](const FieldPlan &field) {
            return std::pair(field.field->kind == FieldKind::Subreport, field.field->x);
        };
        std::ranges::stable_sort(std::span(fields).subspan(begin, end - begin), {}, key);
        quint16 columns = 0;
        quint16 labels = 0;
        for (size_t i = begin; i < end; ++i) {
            fields[i].line = quint16(plan.lines.size());
            if (hasText(*fields[i].field)) {
                fields[i].column = columns++;
                labels += fields[i].field->kind == FieldKind::Label ? 1 : 0;
            }
        }
        plan.lines.push_back({kindOf(*plan.section, labels > 1 && labels == columns, columns),
            std::max<quint16>(columns, 1)});
        begin = end;
    }
    for (const Field *field : fileOrder) {
        const auto at = std::ranges::find(fields, field, &FieldPlan::field);
        plan.paintOrder.push_back(quint16(at - fields.begin()));
    }
}

} // namespace corvane

#include "platform/engine/row_context.h"

#include <algorithm>
#include <numeric>

namespace corvane {

RowContext::RowContext(const LayoutPlan &plan, const RunFacts &facts, RowsetPtr rows)
    : shown(size_t(plan.duplicateSlots()))
    , m_plan(plan)
    , m_facts(facts)
    , m_rows(std::move(rows))
{
    sortByGroups();
    for (const AggregatePlan &aggregate : plan.aggregates())
        m_builders.emplace_back(aggregate.function);
    m_nearGroups.resize(plan.aggregates().size());
    computeTotals();
    m_position = m_row = -1;
}

void RowContext::setPosition(qsizetype position)
{
    m_position = position;
    m_row = position < 0 || position >= rowCount() ? -1
        : m_order.empty()                          ? position
                                                   : qsizetype(m_order[size_t(position)]);
}

/// Sorts within the groups outside, level by level, and notes where groups begin.
void RowContext::sortByGroups()
{
    std::vector<std::vector<quint32>> levels;
    std::vector<quint32> order(m_plan.groupCount() > 0 ? size_t(rowCount()) : 0);
    std::iota(order.begin(), order.end(), 0);
    std::vector<quint32> outer{0};
    for (int level = 0; level < m_plan.groupCount(); ++level) {
        std::vector<Datum> keys;
        keys.reserve(size_t(rowCount()));
        for (qsizetype row = 0; row < rowCount(); ++row)
            keys.push_back(groupKeyOf(level, row));
        const SortOrder sort = m_plan.layout().groups[size_t(level)].sort;
        const auto before = [&](quint32 a, quint32 b) {
            return sort == SortOrder::Descending ? compare(keys[b], keys[a]) < 0
                                                 : compare(keys[a], keys[b]) < 0;
        };
        std::vector<quint32> starts;
        for (size_t run = 0; run < outer.size() && rowCount() > 0; ++run) {
            const size_t begin = outer[run];
            const size_t end = run + 1 < outer.size() ? outer[run + 1] : order.size();
            const auto rows = std::span(order).subspan(begin, end - begin);
            if (sort != SortOrder::None && !std::ranges::is_sorted(rows, before))
                std::ranges::stable_sort(rows, before);
            for (size_t at = begin; at < end; ++at) {
                if (at == begin || keys[order[at]] != keys[order[at - 1]])
                    starts.push_back(quint32(at));
            }
        }
        levels.push_back(starts);
        outer = std::move(starts);
    }
    if (!std::ranges::is_sorted(order))
        m_order = std::move(order);
    m_groups = GroupRanges(rowCount(), std::move(levels));
}

Datum RowContext::groupKeyOf(int group, qsizetype row)
{
    m_row = row;
    m_facts.onRow();
    try {
        return evaluate(m_plan.groupKey(group));
    } catch (const EvaluationFault &fault) {
        if (m_facts.faults->groups++ == 0)
            m_facts.faults->groupWords = fault.words();
        return {};
    }
}

void RowContext::computeTotals()
{
    const auto &aggregates = m_plan.aggregates();
    m_totals.resize(aggregates.size());
    for (size_t i = 0; i < aggregates.size(); ++i) {
        const AggregatePlan &aggregate = aggregates[i];
        if (!aggregate.isTotal())
            continue;
        AggregateValueBuilder builder(aggregate.function);
        qsizetype at = 0;
        for (size_t group = 0; group < m_groups.groupCount(aggregate.level); ++group) {
            builder.reset();
            const qsizetype end = rowCount() == 0 ? 0
                : aggregate.level < 0             ? rowCount()
                                                  : m_groups.end(aggregate.level, group);
            for (; at < end; ++at) {
                setPosition(at);
                addTo(builder, aggregate);
                m_facts.onRow();
            }
            m_totals[i].push_back(builder.value());
        }
    }
}

void RowContext::addTo(AggregateValueBuilder &builder, const AggregatePlan &aggregate)
{
    if (aggregate.argument < 0) {
        builder.addRow();
        return;
    }
    try {
        builder.add(evaluate(aggregate.argument));
    } catch (const EvaluationFault &fault) {
        builder.fail(fault);
    }
}

void RowContext::advance()
{
    setPosition(m_position + 1);
    const auto &aggregates = m_plan.aggregates();
    for (size_t i = 0; i < aggregates.size(); ++i) {
        const AggregatePlan &aggregate = aggregates[i];
        if (!aggregate.isRunning || aggregate.followsPages)
            continue;
        if (aggregate.level >= 0 && m_groups.levelStartingAt(m_position) <= aggregate.level)
            m_builders[i].reset();
        addTo(m_builders[i], aggregate);
    }
}

void RowContext::beginPage()
{
    const auto &aggregates = m_plan.aggregates();
    for (size_t i = 0; i < aggregates.size(); ++i) {
        if (aggregates[i].level == kPageLevel)
            m_builders[i].reset();
    }
}

void RowContext::countOnPage(qsizetype position)
{
    const auto &aggregates = m_plan.aggregates();
    if (position <= m_lastOnPage || std::ranges::none_of(aggregates, &AggregatePlan::followsPages))
        return;
    const Visit visit(*this, position);
    while (m_lastOnPage < position) {
        setPosition(++m_lastOnPage);
        for (size_t i = 0; i < aggregates.size(); ++i) {
            if (!aggregates[i].followsPages)
                continue;
            if (aggregates[i].level >= 0
                && m_groups.levelStartingAt(m_lastOnPage) <= aggregates[i].level)
                m_builders[i].reset();
            addTo(m_builders[i], aggregates[i]);
        }
    }
}

RowContext::Snapshot RowContext::snapshot(int binding) const
{
    Snapshot values;
    if (binding < 0)
        return values;
    for (const int aggregate : m_plan.bindings()[size_t(binding)].aggregates) {
        if (m_plan.aggregates()[size_t(aggregate)].isRunning)
            values.emplace_back(aggregate, m_builders[size_t(aggregate)].value());
    }
    return values;
}

std::vector<AggregateValue> RowContext::pageTotals() const
{
    std::vector<AggregateValue> totals;
    const auto &aggregates = m_plan.aggregates();
    const auto isPageTotal
        = [](const AggregatePlan &plan) { return plan.level == kPageLevel && !plan.isRunning; };
    if (std::ranges::none_of(aggregates, isPageTotal))
        return totals;
    totals.resize(aggregates.size());
    for (size_t i = 0; i < aggregates.size(); ++i) {
        if (isPageTotal(aggregates[i]))
            totals[i] = m_builders[i].value();
    }
    return totals;
}

RowContext::Visit::Visit(RowContext &context, qsizetype position, const Snapshot *running,
    const std::vector<AggregateValue> *pageTotals)
    : m_context(context)
    , m_position(context.m_position)
    , m_running(std::exchange(context.m_visitedRunning, running))
    , m_pageTotals(std::exchange(context.m_visitedPageTotals, pageTotals))
{
    context.setPosition(position);
}

RowContext::Visit::~Visit()
{
    m_context.m_visitedRunning = m_running;
    m_context.m_visitedPageTotals = m_pageTotals;
    m_context.setPosition(m_position);
}

Datum RowContext::evaluate(int binding)
{
    const Binding &bound = m_plan.bindings()[size_t(binding)];
    if (bound.plainColumn >= 0)
        return Datum(value(bound.plainColumn));
    const Binding *outer = std::exchange(m_current, &bound);
    try {
        Datum result = bound.expression->evaluate(*this);
        m_current = outer;
        return result;
    } catch (const EvaluationFault &) {
        m_current = outer;
        throw;
    }
}

bool RowContext::holds(int binding, bool otherwise)
{
    if (binding < 0)
        return true;
    try {
        return evaluate(binding).isTrue();
    } catch (const EvaluationFault &fault) {
        if (m_facts.faults->conditions++ == 0)
            m_facts.faults->conditionWords = fault.words();
        return otherwise;
    }
}

const Binding &RowContext::bindingOf(const Expression &expression) const
{
    Q_ASSERT(m_current && m_current->expression.get() == &expression);
    Q_UNUSED(expression)
    return *m_current;
}

Datum RowContext::column(const Expression &expression, int index)
{
    return Datum(value(bindingOf(expression).columns[size_t(index)]));
}

Datum RowContext::aggregate(const Expression &expression, int index)
{
    const auto number = size_t(bindingOf(expression).aggregates[size_t(index)]);
    const AggregatePlan &plan = m_plan.aggregates()[number];
    if (plan.isTotal()) {
        size_t &near = m_nearGroups[number];
        near = m_groups.groupAt(plan.level, m_position, near);
        return m_totals[number][near].get();
    }
    if (plan.isRunning && m_visitedRunning) {
        for (const auto &[known, value] : *m_visitedRunning) {
            if (size_t(known) == number)
                return value.get();
        }
    }
    if (!plan.isRunning && m_visitedPageTotals && number < m_visitedPageTotals->size())
        return (*m_visitedPageTotals)[number].get();
    return m_builders[number].value().get();
}

Datum RowContext::variable(ReportVariable variable)
{
    const DocumentInfo &info = m_facts.settings.info;
    switch (variable) {
    case ReportVariable::PageNumber:
        return Datum::number(m_facts.pageNumber);
    case ReportVariable::PageCount:
        return Datum::number(m_facts.pageCount);
    case ReportVariable::RowNumber:
        return Datum::number(m_position + 1);
    case ReportVariable::User:
        return info.user;
    case ReportVariable::Database:
        return m_facts.settings.database;
    case ReportVariable::PrintTime:
        return Datum::dateTime(info.printedAt);
    case ReportVariable::ReportName:
        break;
    }
    return m_facts.reportName;
}

Datum RowContext::parameter(const QString &name)
{
    const auto &parameters = m_facts.settings.parameters;
    const auto found = parameters.find(name.toLower());
    if (found == parameters.end())
        throw EvaluationFault(QStringLiteral("there is no parameter \"%1\"").arg(name));
    return found->second;
}

} // namespace corvane

#pragma once

#include "platform/engine/aggregate_value.h"
#include "platform/engine/group_ranges.h"
#include "platform/engine/layout_plan.h"
#include "platform/engine/report_control.h"

namespace corvane {

/// What could not be evaluated beside fields.
struct RunFaults
{
    int groups = 0; ///< rows whose group could not be computed
    QString groupWords; ///< of the first
    int conditions = 0;
    QString conditionWords;
};

/// What all expressions of one run see beside rows: shared by a report and its sub-reports.
struct RunFacts
{
    const RenderSettings &settings;
    QString reportName;
    RunFaults *faults = nullptr;
    /// To be called for each row that something is done with, a sub-report's too; may throw to end the run.
    std::function<void()> onRow = [] {};
    int pageNumber = 1;
    int pageCount = 1; ///< before the end: a guess that only serves to measure
};

/// The rows of one layout in the order of its groups, with a current row, and what expressions ask
/// for. Positions count from 0 in that order.
class RowContext final : public EvaluationContext
{
public:
    RowContext(const LayoutPlan &plan, const RunFacts &facts, RowsetPtr rows);

    const LayoutPlan &plan() const { return m_plan; }
    qsizetype rowCount() const { return m_rows->rowCount(); }
    const GroupRanges &groups() const { return m_groups; }

    /// Makes the next row the current one; running aggregates take it in.
    void advance();
    qsizetype position() const { return m_position; }
    /// The current row's cell.
    Value value(int field) const { return m_row < 0 ? Value() : m_rows->value(m_row, field); }

    /// @throws EvaluationFault
    Datum evaluate(int binding);
    /// Whether a condition holds; without one it does. One that cannot be evaluated is counted and
    /// gives `otherwise`.
    bool holds(int binding, bool otherwise = true);

    /// A page begins: its aggregates start anew.
    void beginPage();
    /// All rows up to this one stand on this page or an earlier one: aggregates of the page and of
    /// page sections take in those that are new.
    void countOnPage(qsizetype position);

    /// The running aggregates that an expression needs, as they stand now.
    using Snapshot = std::vector<std::pair<int, AggregateValue>>;
    Snapshot snapshot(int binding) const;
    /// Totals of the page in progress, by aggregate; empty where no aggregate is one of the page.
    std::vector<AggregateValue> pageTotals() const;

    /// Another row is the current one while this lives, with other values for aggregates.
    class Visit
    {
    public:
        Visit(RowContext &context, qsizetype position, const Snapshot *running = nullptr,
            const std::vector<AggregateValue> *pageTotals = nullptr);
        ~Visit();
        Q_DISABLE_COPY_MOVE(Visit)

    private:
        RowContext &m_context;
        qsizetype m_position;
        const Snapshot *m_running;
        const std::vector<AggregateValue> *m_pageTotals;
    };

    /// What fields that hide duplicates showed last, by FieldPlan::duplicateSlot.
    std::vector<QString> shown;
    qsizetype shownPosition = -2; ///< the row that `shown` is of

    Datum column(const Expression &expression, int index) override;
    Datum aggregate(const Expression &expression, int index) override;
    Datum variable(ReportVariable variable) override;
    Datum parameter(const QString &name) override;
    const ValueTextStyle &style() const override { return m_facts.settings.style; }

private:
    void setPosition(qsizetype position);
    void sortByGroups();
    Datum groupKeyOf(int group, qsizetype row);
    void computeTotals();
    void addTo(AggregateValueBuilder &builder, const AggregatePlan &aggregate);
    const Binding &bindingOf(const Expression &expression) const;

    const LayoutPlan &m_plan;
    const RunFacts &m_facts;
    RowsetPtr m_rows;
    std::vector<quint32> m_order; ///< row by position; empty: as they came
    GroupRanges m_groups;
    qsizetype m_position = -1;
    qsizetype m_row = -1;
    qsizetype m_lastOnPage = -1;
    const Binding *m_current = nullptr;
    std::vector<std::vector<AggregateValue>> m_totals; ///< by aggregate and group
    std::vector<AggregateValueBuilder> m_builders; ///< running and page aggregates, by aggregate
    std::vector<size_t> m_nearGroups; ///< by aggregate: the group that was asked for last
    const Snapshot *m_visitedRunning = nullptr;
    const std::vector<AggregateValue> *m_visitedPageTotals = nullptr;
};

} // namespace corvane

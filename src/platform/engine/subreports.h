#pragma once

#include "platform/engine/row_walker.h"

#include <QtCore/QHash>

namespace corvane {

/// Opens connections as data sources name them and runs each query text once.
class RowSource
{
public:
    RowSource(const RenderSettings &settings, QueryWatch watch)
        : m_settings(settings)
        , m_watch(std::move(watch))
    {
    }

    /// No rows for a blank text. @throws DatabaseError
    RowsetPtr rows(const QString &connectionText, const QString &sql);

private:
    const RenderSettings &m_settings;
    QueryWatch m_watch;
    std::map<QString, std::unique_ptr<Connection>> m_opened;
    QHash<std::pair<QString, QString>, RowsetPtr> m_known; ///< by connection and text
};

/// Lays out the sub-reports of one run. A query runs once for each set of link values.
class Subreports
{
public:
    Subreports(const ReportControl &main, RowSource &rows, TextLooks &looks, BandBuilder &builder,
        const RunFacts &facts);

    /// The sub-report of a field for the parent's current row; null when nothing is bound to the
    /// field.
    /// @throws ReportError for a report that would hold itself, EvaluationFault for a link without
    /// a value
    std::shared_ptr<const Galley> layOut(const FieldPlan &field, RowContext &parent);

private:
    struct Target
    {
        const ReportLayout *layout = nullptr;
        const DataSource *source = nullptr;
        QString fileName;
    };

    std::optional<Target> targetOf(const Field &field);
    RowsetPtr rowsOf(const Target &target, const QString &sql);
    QString boundQuery(const Target &target, const FieldPlan &field, RowContext &parent) const;
    [[noreturn]] static void refuseToken(const Target &target, const Field &field, QStringView token);
    const LayoutPlan &planOf(const Target &target, const QStringList &fieldNames);
    void refuseCircle(const Target &target) const;

    const ReportControl &m_main;
    RowSource &m_rows;
    TextLooks &m_looks;
    BandBuilder &m_builder;
    const RunFacts &m_facts;
    std::map<std::pair<QString, QString>, std::unique_ptr<ReportControl>>
        m_loaded; ///< by file and layout
    std::map<const ReportLayout *, std::vector<std::unique_ptr<LayoutPlan>>> m_plans;
    std::vector<std::shared_ptr<RowContext>>
        m_contexts; ///< that fields still wait in for page numbers
    std::vector<Target> m_chain; ///< main report first
};

} // namespace corvane

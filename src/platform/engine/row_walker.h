#pragma once

#include "platform/engine/band_builder.h"
#include "platform/engine/band_sink.h"

namespace corvane {

enum class GroupOutline { None, Entries };

/// Walks the rows of a layout in their order and hands the bands of groups and details to a sink.
class RowWalker
{
public:
    RowWalker(RowContext &context, BandBuilder &builder, BandSink &sink, GroupOutline outline);

    /// All rows; `onRow` is called behind each.
    void walk(const std::function<void(qsizetype row)> &onRow);
    /// Sections that belong to no row, filled from a row: a report's header or footer.
    void addSections(SectionKind kind, qsizetype position);

private:
    void openGroup(int level);
    void closeGroup(int level, bool isLast);
    void addDetails();
    QString outlineTitle(int level);

    RowContext &m_context;
    BandBuilder &m_builder;
    BandSink &m_sink;
    GroupOutline m_outline;
    struct GroupSections
    {
        std::vector<const SectionPlan *> headers;
        std::vector<const SectionPlan *> footers;
    };
    std::vector<GroupSections> m_groups;
    std::vector<const SectionPlan *> m_details;
    Band m_band; ///< kept, so that a row costs no memory of its own
    std::vector<std::pair<int, QString>> m_titles; ///< of groups that began and have no band yet
};

} // namespace corvane

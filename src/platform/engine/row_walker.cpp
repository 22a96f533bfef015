#include "platform/engine/row_walker.h"

namespace corvane {

RowWalker::RowWalker(
    RowContext &context, BandBuilder &builder, BandSink &sink, GroupOutline outline)
    : m_context(context)
    , m_builder(builder)
    , m_sink(sink)
    , m_outline(outline)
    , m_details(context.plan().sectionsOf(SectionKind::Detail))
{
    for (int level = 0; level < context.plan().groupCount(); ++level) {
        m_groups.push_back({context.plan().sectionsOf(SectionKind::GroupHeader, level),
            context.plan().sectionsOf(SectionKind::GroupFooter, level)});
    }
}

void RowWalker::walk(const std::function<void(qsizetype)> &onRow)
{
    const GroupRanges &groups = m_context.groups();
    const qsizetype count = m_context.rowCount();
    for (qsizetype row = 0; row < count; ++row) {
        m_context.advance();
        for (int level = groups.levelStartingAt(row); level < groups.levelCount(); ++level)
            openGroup(level);
        addDetails();
        const bool isLast = row + 1 == count;
        const int ending = isLast ? 0 : groups.levelStartingAt(row + 1);
        for (int level = groups.levelCount() - 1; level >= ending; --level)
            closeGroup(level, isLast);
        onRow(row);
    }
}

void RowWalker::addSections(SectionKind kind, qsizetype position)
{
    const RowContext::Visit visit(m_context, position);
    for (const SectionPlan *plan : m_context.plan().sectionsOf(kind)) {
        if (!m_context.holds(plan->visibleWhen))
            continue;
        m_builder.build(m_band, *plan, m_context);
        m_sink.add(m_band);
    }
}

void RowWalker::openGroup(int level)
{
    const Group &group = m_context.plan().layout().groups[size_t(level)];
    m_sink.openGroup(level, group, m_context.position() == 0);
    if (m_outline == GroupOutline::Entries)
        m_titles.emplace_back(level, outlineTitle(level));
    for (const SectionPlan *plan : m_groups[size_t(level)].headers) {
        if (!m_context.holds(plan->visibleWhen))
            continue;
        m_builder.build(m_band, *plan, m_context);
        m_band.outline.swap(m_titles);
        m_titles.clear();
        m_sink.addHeader(m_band, level, group.repeatHeader);
    }
}

QString RowWalker::outlineTitle(int level)
{
    const LayoutPlan &plan = m_context.plan();
    const int text = plan.outlineText(level);
    try {
        const QString title = m_context.evaluate(text >= 0 ? text : plan.groupKey(level))
                                  .toText(m_context.style())
                                  .simplified();
        return title.isEmpty() ? QStringLiteral("(blank)") : title;
    } catch (const EvaluationFault &) {
        return QStringLiteral("#");
    }
}

void RowWalker::addDetails()
{
    for (const SectionPlan *plan : m_details) {
        if (!m_context.holds(plan->visibleWhen))
            continue;
        m_builder.build(m_band, *plan, m_context);
        if (!m_titles.empty()) {
            m_band.outline.swap(m_titles);
            m_titles.clear();
        }
        m_sink.add(m_band);
    }
}

void RowWalker::closeGroup(int level, bool isLast)
{
    for (const SectionPlan *plan : m_groups[size_t(level)].footers) {
        if (!m_context.holds(plan->visibleWhen))
            continue;
        m_builder.build(m_band, *plan, m_context);
        m_sink.add(m_band);
    }
    m_sink.closeGroup(
        level, m_context.plan().layout().groups[size_t(level)].newPageAfter && !isLast);
}

} // namespace corvane

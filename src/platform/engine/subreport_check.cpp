#include "platform/engine/subreport_check.h"

#include "platform/engine/attribute_reader.h"
#include "platform/engine/suggestion.h"

#include <QtCore/QHash>
#include <QtCore/QStringList>

#include <algorithm>

namespace corvane {

namespace {

constexpr int kMaxNesting = 8;

/// Walks from report to report, each of them once: many fields may lead to the same.
class SubreportWalk
{
public:
    SubreportWalk(const ReportSource &source, const XmlElement &root)
        : m_source(source)
    {
        for (const XmlElement &report : root.children)
            m_reports.insert(report.attribute(u"name")->value.trimmed(), &report);
    }

    /// How many reports stand in each other below this one.
    int depthOf(const XmlElement &report)
    {
        if (const auto known = m_depths.constFind(&report); known != m_depths.cend())
            return *known;
        const QString name = report.attribute(u"name")->value.trimmed();
        m_chain += name;
        int depth = 0;
        for (const XmlElement &section : report.children) {
            for (const XmlElement &field : section.children) {
                if (field.name == u"Subreport" && field.attribute(u"report"))
                    depth = std::max(depth, depthBehind(AttributeReader(m_source, field)) + 1);
            }
        }
        m_chain.removeLast();
        m_depths.insert(&report, depth);
        m_reached.push_back(&report);
        return depth;
    }

    const std::vector<const XmlElement *> &reached() const { return m_reached; }

private:
    int depthBehind(const AttributeReader &field)
    {
        const QString name = field.name("report").trimmed();
        const XmlElement *report = m_reports.value(name);
        if (!report) {
            QStringList names = m_reports.keys();
            names.sort();
            field.fail("report",
                QString(u"there is no such report in this file" % suggestion(name, names)));
        }
        if (const qsizetype start = m_chain.indexOf(name); start >= 0) {
            const QStringList circle = m_chain.sliced(start) + QStringList(name);
            field.fail("report",
                QStringLiteral("a report cannot hold itself: %1.")
                    .arg(circle.join(QStringLiteral(" → "))));
        }
        const int depth = depthOf(*report);
        if (m_chain.size() + depth > kMaxNesting)
            field.fail("report", QStringLiteral("more than 8 reports stand in each other."));
        return depth;
    }

    const ReportSource &m_source;
    QHash<QString, const XmlElement *> m_reports;
    QHash<const XmlElement *, int> m_depths;
    QStringList m_chain;
    std::vector<const XmlElement *> m_reached;
};

} // namespace

std::vector<const XmlElement *> reachedReports(
    const ReportSource &source, const XmlElement &root, const XmlElement &report)
{
    SubreportWalk walk(source, root);
    walk.depthOf(report);
    std::vector<const XmlElement *> reached = walk.reached();
    reached.pop_back(); // the report itself comes last
    return reached;
}

} // namespace corvane

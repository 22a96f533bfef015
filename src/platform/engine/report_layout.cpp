#include "platform/engine/report_layout.h"

#include <algorithm>

namespace corvane {

const Group *ReportLayout::findGroup(QStringView groupName) const
{
    const auto found = std::ranges::find(groups, groupName, &Group::name);
    return found == groups.end() ? nullptr : &*found;
}

const Section *ReportLayout::findSection(SectionKind kind, int group) const
{
    const auto found = std::ranges::find_if(sections,
        [&](const Section &section) { return section.kind == kind && section.group == group; });
    return found == sections.end() ? nullptr : &*found;
}

} // namespace corvane

#pragma once

#include "platform/engine/report_layout.h"
#include "platform/engine/style_sheet.h"

namespace corvane {

/// One field of a section, its frame not yet held against the section's. @throws ReportError
Field readField(const ReportSource &source, const XmlElement &element, const StyleSheet &styles,
    const std::vector<Group> &groups);

} // namespace corvane

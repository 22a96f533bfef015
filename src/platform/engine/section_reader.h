#pragma once

#include "platform/engine/report_layout.h"
#include "platform/engine/style_sheet.h"

namespace corvane {

/// The attribute "newPage" of a group or section. @throws ReportError
void readNewPage(const AttributeReader &reader, bool &before, bool &after);

/// Adds the sections of `<Report>` to a layout that has its page and groups already. @throws
/// ReportError
void readSections(const ReportSource &source, const XmlElement &report, const StyleSheet &styles,
    ReportLayout &layout);

} // namespace corvane

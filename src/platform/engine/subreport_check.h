#pragma once

#include "platform/engine/xml_tree.h"

#include <vector>

namespace corvane {

/// The reports of the file that a report's `<Subreport report="…">` lead to, however far, itself
/// left out.
/// @throws ReportError: an unknown name, a circle (the chain is named), more than 8 in each other
std::vector<const XmlElement *> reachedReports(
    const ReportSource &source, const XmlElement &root, const XmlElement &report);

} // namespace corvane

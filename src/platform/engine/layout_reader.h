#pragma once

#include "platform/engine/report_layout.h"
#include "platform/engine/xml_tree.h"

namespace corvane {

/// One layout out of a file's tree, its pictures loaded and its expressions compiled. The layouts
/// that its sub-reports name are read for their faults. Names count without blanks around them.
/// @throws ReportError
ReportLayout readLayout(const ReportSource &source, const XmlElement &root, const QString &name);

} // namespace corvane

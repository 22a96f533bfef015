#pragma once

#include "platform/engine/attribute_reader.h"
#include "platform/engine/report_layout.h"

namespace corvane {

/// Between the side margins; of one newspaper column for sections that run through columns.
Twips sectionWidth(const PageSetup &page, SectionKind kind);
/// Between the upper and lower margin.
Twips bodyHeight(const PageSetup &page);

/// The element `<Page>`; null: Letter, upright, margins of one inch. @throws ReportError
PageSetup readPage(const ReportSource &source, const XmlElement *element);

} // namespace corvane

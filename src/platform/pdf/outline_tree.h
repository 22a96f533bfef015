#pragma once

#include "platform/pdf/page_tree.h"

namespace corvane {

/// The document's outline (ISO 32000-1, 12.3.3), groups within groups closed; empty when it has none.
std::optional<QPDFObjectHandle> outlineTree(QPDF &pdf, const Document &document, const PageTree &pages);

/// Depths of the outline's entries, from 0, none more than one deeper than the entry before.
std::vector<int> outlineLevels(const std::vector<OutlineEntry> &outline);

} // namespace corvane

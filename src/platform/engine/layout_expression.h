#pragma once

#include "platform/engine/attribute_reader.h"
#include "platform/engine/report_layout.h"

namespace corvane {

/// An attribute's expression, null where it is missing; the groups that it sums over exist. @throws
/// ReportError
ExpressionPtr readExpression(
    const AttributeReader &reader, const char *name, const std::vector<Group> &groups);

/// The same where only the row itself is known yet: without aggregates, page numbers and row
/// numbers.
/// @throws ReportError
ExpressionPtr readRowExpression(const AttributeReader &reader, const char *name);

} // namespace corvane

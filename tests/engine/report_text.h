#pragma once

#include "platform/engine/report_layout.h"

namespace corvane::test {

/// A layout as text, one line for the page and each group, section and field: "name=value" words,
/// in the names of the model; of an expression the columns that it reads.
QString reportText(const ReportLayout &layout);

} // namespace corvane::test

#pragma once

#include "support/tds/answer.h"
#include "support/tds/wire.h"

namespace corvane::test::tds {

/// TYPE_INFO of a column ([MS-TDS] 2.2.5.6), every type in its nullable form.
void writeTypeInfo(WireWriter &out, const Column &column);

/// A cell with its length in front, null included (TYPE_VARBYTE, [MS-TDS] 2.2.5.2.3; partially
/// length-prefixed for types without a limit). WireFault for a text that is no value of the type.
void writeValue(WireWriter &out, const Column &column, const Cell &cell);

/// Long types of old name a table in front of the column's name.
bool namesItsTable(ColumnType type);

} // namespace corvane::test::tds

#pragma once

#include "platform/database/odbc/handles.h"
#include "platform/database/rowset.h"

namespace corvane::odbc {

/// The number with the digits that four bytes hold, so that 0.1 stays 0.1 in eight.
double shortestReal(float number);

/// Days since the first day of 1970.
qint64 epochDay(const SQL_DATE_STRUCT &date);

/// Milliseconds since 1970; what is finer is left out.
qint64 epochMs(const SQL_TIMESTAMP_STRUCT &moment);

/// A decimal from a driver's digits: some leave out the zero before the point. What is no number
/// ("NaN") stays a text.
void addDecimal(RowsetBuilder &builder, QByteArrayView digits);

/// A time from "HH:MM:SS.fffffff"; what follows the parts of the second is left out. What is no
/// time stays a text.
void addTime(RowsetBuilder &builder, QByteArrayView text);

/// A text as UTF-8, no character lost.
void addText(RowsetBuilder &builder, QStringView utf16);

} // namespace corvane::odbc

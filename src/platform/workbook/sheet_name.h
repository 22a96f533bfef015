#pragma once

#include <QtCore/QString>

namespace corvane {

/// A sheet's name without what the format forbids ([MS-XLS] BoundSheet8: []:*?/\, control
/// characters, an apostrophe at either end, more than 31 characters); "Sheet1" when nothing is
/// left. `number` counts from 1; from 2 on it is told apart as "Name (2)".
QString sheetName(QStringView wanted, int number);

} // namespace corvane

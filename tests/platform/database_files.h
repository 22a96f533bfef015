#pragma once

#include "platform/database/rowset.h"

#include <QtCore/QString>

namespace corvane::test {

/// Makes a database file by running the statements; the test fails when one of them does.
void writeDatabase(const QString &path, const QByteArray &statements);

/// "Integer 5", "Text abc", "Date 11/01/2026" or "Null".
QString described(const Value &value);

/// Every cell described: cells parted by " | ", rows by " / ".
QString described(const Rowset &rowset);

} // namespace corvane::test

#pragma once

#include <QtCore/QByteArray>

namespace corvane::demo {

/// The statements that make a database of that name on SQL Server, with the tables, rows and
/// indices of a SQLite file given as bytes; for its command-line client, batches parted by GO.
/// @throws std::runtime_error with the library's words.
QByteArray sqlScript(const QByteArray &name, const QByteArray &databaseFile);

} // namespace corvane::demo

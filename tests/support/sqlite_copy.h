#pragma once

#include <QtCore/QString>

namespace corvane::test {

/// The statements that make every table of a SQLite file again on PostgreSQL, rows included, to be
/// read by its command-line client. Bits become Booleans; nothing is put in quotes.
/// Empty when done, else the library's words.
QString copyStatements(const QString &sqliteFile, QByteArray &statements);

} // namespace corvane::test

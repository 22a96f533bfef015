#pragma once

#include "platform/database/driver.h"

#include <QtCore/QString>

#include <array>
#include <optional>

namespace corvane {

class MessageBoxes;
struct Reportr;

/// The configured names that stand for the placeholder databases of a query text.
struct DatabaseNames {
    QString main;
    QString second; ///< empty: placeholders of the second database stay as they are
};

DatabaseNames databaseNames(const Reportr &state);

/// "CorvaneDB" and "HalvernDB", plain or bracketed before ".dbo", become the configured names.
/// Every occurrence, case-sensitive; never fails.
QString fixDBNames(const QString &sql, const DatabaseNames &names);

/// What stands for a query's tokens; empty: the token stays as it is.
struct QueryTokens {
    std::optional<std::array<QString, 2>> dates; ///< for {DATE1} and {DATE2}, as shown to the user
    std::optional<QString> patient;              ///< for <PID>
};

/// A definition's query from its two pieces, with database names and tokens put in.
QString queryText(const QString &first, const QString &second, const DatabaseNames &names, const QueryTokens &tokens);

/// Replaces the first `findStr` by `repString` read as a date and written yyyy/mm/dd.
/// Deliberate: seven characters are taken out whatever the length of `findStr`, as definitions written
/// for it expect. @throws RunTimeFault TypeMismatch when `repString` is no date.
QString ParseSQL(const QString &szsql, const QString &findStr, const QString &repString, int dateOrder = 0);

/// Whether the text opens as a recordset on gConn; otherwise the user sees "SQL Error".
bool TestSQL(Reportr &state, MessageBoxes &boxes, const QString &szsql, const QueryWatch &watch = {});

} // namespace corvane

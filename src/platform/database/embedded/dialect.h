#pragma once

#include "platform/database/embedded/sql_type.h"

#include <QtCore/QStringList>

#include <functional>
#include <vector>

namespace corvane::embedded {

/// Number of the failure when a statement is wrong or beyond the dialect.
constexpr int kStatementError = -2147217900;
/// Number of the server's failed conversion of a text to a date.
constexpr int kDateConversionError = 241;

struct DialectSettings
{
    int dateOrder = 0; ///< as DriverSettings::dateOrder
    QDateTime now; ///< what GETDATE gives, the same throughout the statement
    /// The declared type of a column; the catalogue is empty for an unqualified table.
    std::function<SqlType(const QString &catalogue, const QString &table, const QString &column)>
        columnType;
};

/// One column of a result; `several` stands for all columns of a table.
struct ResultType
{
    SqlType type;
    bool several = false;
};

struct Translation
{
    QByteArray sql; ///< what SQLite runs, UTF-8
    std::vector<ResultType> results; ///< what is known of the result's columns, in order
    QStringList catalogues; ///< the catalogues that the statement names
};

/// The server's query (one SELECT) as SQLite's. DatabaseError for a statement that is wrong, that
/// writes, or that uses what SQLite has no equal for; the message names the construct and its
/// place.
Translation translate(const QString &sql, const DialectSettings &settings);

} // namespace corvane::embedded

#pragma once

#include "platform/database/connection_text.h"

namespace corvane::odbc {

/// Whose keywords a driver reads.
enum class Dialect { ServerVendor, FreeTds, Postgres, Other };
Dialect dialectOf(const QString &driver);

/// A data source as administrators write it: "HOST", "HOST\INSTANCE", "tcp:HOST,1433", "(local)".
struct ServerAddress
{
    QString host; ///< an instance included
    QString port; ///< empty: the driver's own
    bool operator==(const ServerAddress &) const = default;
};
ServerAddress serverAddress(const QString &dataSource);

/// The driver manager's connection text without user and password.
QString serverKeywords(const QString &driver, const ConnectionText &text);
/// The same with both: never show it.
QString logonKeywords(const QString &driver, const ConnectionText &text);

/// A keyword's value, in braces where it needs them, so that it can end in no keyword of its own.
QString keywordValue(const QString &value);

/// The driver's words without the password, in case it repeats what it was given.
QString withoutPassword(QString message, const QString &password);

} // namespace corvane::odbc

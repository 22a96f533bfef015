#pragma once

#include <QtCore/QStringList>

namespace corvane::odbc {

/// The installed driver that serves a provider: the SQL Server providers the vendor's newest driver
/// or else FreeTDS, every other provider the driver of that name. DatabaseError with cause
/// Provider, which lists the drivers, when there is none.
QString driverFor(const QString &provider, const QStringList &installed);

/// NN of "ODBC Driver NN for SQL Server"; -1 for any other driver.
int vendorVersion(const QString &driver);

} // namespace corvane::odbc

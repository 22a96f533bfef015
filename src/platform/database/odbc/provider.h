#pragma once

#include "platform/database/connection_text.h"

#include <QtCore/QStringList>

namespace corvane::odbc {

/// The installed driver that serves a provider: the SQL Server providers the vendor's newest driver
/// or else FreeTDS, every other provider the driver of that name. DatabaseError with cause
/// Provider, which lists the drivers, when there is none.
QString driverFor(const QString &provider, const QStringList &installed);

/// The driver manager's connection text without the user and the password.
QString serverKeywords(const QString &driver, const ConnectionText &text);

/// A keyword's value, in braces where it needs them, so that it can end in no keyword of its own.
QString keywordValue(const QString &value);

/// The driver's words without the password, in case it repeats what it was given.
QString withoutPassword(QString message, const QString &password);

} // namespace corvane::odbc

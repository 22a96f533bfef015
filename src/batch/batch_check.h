#pragma once

#include "batch/batch_options.h"

#include <QtCore/QDateTime>
#include <QtCore/QLocale>

namespace corvane {

/// What `corvane-batch check` was asked for.
struct CheckOptions
{
    QStringList reports;
    QString folder; ///< the program folder
    QString user; ///< empty: the queries are not tried
    bool passwordFromInput = false;
};

/// Whether a command line starts with the command `check`.
bool isCheck(const QStringList &arguments);
std::variant<CheckOptions, UsageFault> parseCheckOptions(const QStringList &arguments);
QString checkUsage();

/// Prints one line for each finding on standard output; with a user the queries are tried as well.
/// @return ReportFailed when a definition has an error; a logon that fails ends it as it ends a run
int runCheck(const CheckOptions &options, const QString &password, const QDateTime &now,
    const QLocale &locale);

} // namespace corvane

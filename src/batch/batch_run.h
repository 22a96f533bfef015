#pragma once

#include "batch/batch_options.h"

#include <QtCore/QDateTime>
#include <QtCore/QLocale>

namespace corvane {

namespace ExitStatus {
constexpr int Done = 0;
constexpr int ReportFailed = 1;
constexpr int Usage = 2;
constexpr int Refused = 3;
constexpr int NoConnection = 4;
} // namespace ExitStatus

/// Logs on, runs one report and writes the files asked for; on any status but 0 none is left.
int runBatch(const BatchOptions &options, const QString &password, const QDateTime &now, const QLocale &locale);

} // namespace corvane

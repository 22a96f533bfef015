#pragma once

#include <QtCore/QString>

namespace corvane {

/// What a report file is: DesignedReport when an XML declaration and a bare "<Reports>" both stand in
/// its first 60 bytes, TabularReport when "Columns"/"PageColumns" holds more than blanks, else NoReport.
int getReportType(const QString &path);

/// The looser test of the report list: any text in "PageColumns", blanks included, is tabular and
/// everything else designed; never NoReport.
int listedReportType(const QString &path);

/// A sentence about why a definition cannot be read; empty when it can.
QString unreadableReason(const QString &path);

} // namespace corvane

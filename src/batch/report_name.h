#pragma once

#include <QtCore/QString>

namespace corvane {

/// Whether a report is named by a path, which is taken as through Open, rather than as from the
/// list.
bool hasFolder(const QString &report);

/// The files that "DIR/*.rpt" stands for, where no shell has put them in its place; a name that stands for none is
/// left as it is.
QStringList expandedName(const QString &report);

/// The file of the report list that a bare name stands for, with or without its ending; empty when
/// there is none.
QString listedReport(const QString &folder, const QString &name);

} // namespace corvane

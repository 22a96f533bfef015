#pragma once

#include <QtCore/QStringList>

namespace corvane {

/// The folder of report definitions beside the program.
QString reportFolder(const QString &programFolder);

/// The names of the "*.rpt" files of a folder, upper or lower case, as they are, sorted by name.
/// A missing folder gives an empty list.
QStringList reportFiles(const QString &folder);

} // namespace corvane

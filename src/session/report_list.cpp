#include "session/report_list.h"

#include <QtCore/QDir>

namespace corvane {

QString reportFolder(const QString &programFolder)
{
    return QDir(programFolder).filePath(QStringLiteral("Reports"));
}

QStringList reportFiles(const QString &folder)
{
    return QDir(folder).entryList({QStringLiteral("*.rpt")}, QDir::Files, QDir::Name | QDir::IgnoreCase | QDir::LocaleAware);
}

} // namespace corvane

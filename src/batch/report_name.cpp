#include "batch/report_name.h"

#include "session/report_list.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>

namespace corvane {

bool hasFolder(const QString &report)
{
    return report.contains(u'/') || report.contains(QDir::separator());
}

QStringList expandedName(const QString &report)
{
    const QFileInfo pattern(report);
    const bool mayStandForMore = pattern.fileName().contains(u'*') || pattern.fileName().contains(u'?');
    if (!mayStandForMore || pattern.exists())
        return {report};
    const QDir folder = pattern.dir();
    QStringList names;
    for (const QString &name : folder.entryList({pattern.fileName()}, QDir::Files, QDir::Name))
        names += QDir::cleanPath(folder.filePath(name));
    return names.isEmpty() ? QStringList {report} : names;
}

QString listedReport(const QString &folder, const QString &name)
{
    for (const QString &file : reportFiles(folder)) {
        if (file.compare(name, Qt::CaseInsensitive) == 0
            || QFileInfo(file).completeBaseName().compare(name, Qt::CaseInsensitive) == 0)
            return QDir(folder).filePath(file);
    }
    return {};
}

} // namespace corvane

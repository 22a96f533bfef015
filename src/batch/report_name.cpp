#include "batch/report_name.h"

#include "session/report_list.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>

namespace corvane {

bool hasFolder(const QString &report)
{
    return report.contains(u'/') || report.contains(QDir::separator());
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

#include "shared/reportr.h"

#include "shared/connection_doctor.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>

namespace corvane {

QString Reportr::advice(FailureCause cause, const QString &connectString) const
{
    return connectionAdvice(cause, gIniFile, isSecond(connectString) ? kSecondSection : kMainSection);
}

bool FileExists(const QString &path)
{
    return QFileInfo(path).isFile();
}

QString findFile(const QString &folder, const QString &name)
{
    const QStringList names = QDir(folder).entryList(QDir::Files | QDir::Hidden);
    for (const QString &candidate : names) {
        if (candidate.compare(name, Qt::CaseInsensitive) == 0)
            return QDir(folder).filePath(candidate);
    }
    return {};
}

} // namespace corvane

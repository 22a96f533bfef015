#include "platform/files/write_failure.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>

namespace corvane {

QString writeFailure(const QString &fileName, QFileDevice::FileError error, const QString &systemText)
{
    const QFileInfo target(fileName);
    const QString folder = QDir::toNativeSeparators(target.absolutePath());
    if (target.isDir())
        return QStringLiteral("A folder has this name. Choose another file name.");
    if (!QFileInfo(target.absolutePath()).isDir())
        return QStringLiteral("The folder \"%1\" does not exist. Choose another folder.").arg(folder);
    if (target.exists() && !target.isWritable())
        return QStringLiteral("You may not change this file. Choose another file name or folder.");
    if (!QFileInfo(target.absolutePath()).isWritable())
        return QStringLiteral("You may not write in the folder \"%1\". Choose another folder.").arg(folder);
    if (error == QFileDevice::ResourceError)
        return QStringLiteral("%1. Free some space or choose a folder on another disk.").arg(systemText);
    return QStringLiteral("%1. Choose another file name or folder.").arg(systemText);
}

} // namespace corvane

#include "platform/files/write_failure.h"

#include "platform/files/placing.h"
#include "platform/files/reach.h"
#include "platform/messages/system_words.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>

namespace corvane {

namespace {

struct WriteFault
{
    QString cause;
    QString elsewhere; ///< what to do when another place will do
    QString here; ///< what to do when it must be this one
};

QString sentence(const QString &systemText)
{
    return systemWords(systemText) + u'.';
}

QString missingFolder(const QString &folder)
{
    const QString reason = outOfReachReason(folder);
    return reason.isEmpty() ? QStringLiteral("The folder \"%1\" does not exist.").arg(folder)
                            : QStringLiteral("The folder \"%1\" cannot be reached: %2.").arg(folder, reason);
}

WriteFault findFault(
    const QFileInfo &target, QFileDevice::FileError error, const QString &systemText)
{
    const QString folder = QDir::toNativeSeparators(target.absolutePath());
    const QFileInfo around(target.absolutePath());
    if (target.isDir())
        return {QStringLiteral("A folder has this name."),
            QStringLiteral("Choose another file name."), QStringLiteral("Rename that folder.")};
    if (!around.isDir())
        return {missingFolder(folder),
            QStringLiteral("Choose another folder."),
            QStringLiteral("If it is on the network, check the connection.")};
    if (target.exists() && !target.isFile())
        return {QStringLiteral("This is a device and not a file."),
            QStringLiteral("Choose another file name."), QStringLiteral("Remove it.")};
    const QString askForRight
        = QStringLiteral("Ask whoever looks after the folder for the right to.");
    if (target.exists() && !target.isWritable())
        return {QStringLiteral("You may not change this file."),
            QStringLiteral("Choose another file name or folder."), askForRight};
    if (!around.isWritable() || error == QFileDevice::PermissionsError)
        return {QStringLiteral("You may not write in the folder \"%1\".").arg(folder),
            QStringLiteral("Choose another folder."), askForRight};
    if (error == QFileDevice::ResourceError)
        return {sentence(systemText),
            QStringLiteral("Free some space or choose a folder on another disk."),
            QStringLiteral("Free some space there.")};
    if (isOpenElsewhere(target.absoluteFilePath(), OpenUse::Any))
        return {QStringLiteral("The file is open in another program."),
            QStringLiteral("Close it there or choose another file name."),
            QStringLiteral("Close it there and try again.")};
    return {sentence(systemText), QStringLiteral("Choose another file name or folder."),
        QStringLiteral("Have the disk and the connection to it looked at.")};
}

} // namespace

QString writeFailure(const QString &fileName, QFileDevice::FileError error,
    const QString &systemText, SavePlace place)
{
    const WriteFault fault = findFault(QFileInfo(fileName), error, systemText);
    return QString(
        fault.cause + u' ' + (place == SavePlace::Choosable ? fault.elsewhere : fault.here));
}

} // namespace corvane

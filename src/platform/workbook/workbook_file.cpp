#include "platform/workbook/workbook_file.h"

#include "platform/workbook/workbook_writer.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>

namespace corvane {

namespace {

/// Why a file cannot be written and what to do, as two sentences.
QString causeOf(const QString &fileName, QFileDevice::FileError error, const QString &systemText)
{
    const QFileInfo target(fileName);
    const QString folder = QDir::toNativeSeparators(target.absolutePath());
    if (target.isDir())
        return QStringLiteral("A folder has this name. Choose another file name.");
    if (!QFileInfo(target.absolutePath()).isDir())
        return QStringLiteral("The folder \"%1\" does not exist. Choose another folder.")
            .arg(folder);
    if (target.exists() && !target.isWritable())
        return QStringLiteral("You may not change this file. Choose another file name or folder.");
    if (!QFileInfo(target.absolutePath()).isWritable())
        return QStringLiteral("You may not write in the folder \"%1\". Choose another folder.")
            .arg(folder);
    if (error == QFileDevice::ResourceError)
        return QStringLiteral("%1. Free some space or choose a folder on another disk.")
            .arg(systemText);
    return QStringLiteral("%1. Choose another file name or folder.").arg(systemText);
}

} // namespace

WorkbookFile::WorkbookFile(const QString &fileName)
    : m_file(fileName)
{
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        throw WorkbookError(failure());
}

void WorkbookFile::commit()
{
    if (!m_file.commit())
        throw WorkbookError(failure());
}

QString WorkbookFile::failure() const
{
    return failureText(
        m_file.fileName(), causeOf(m_file.fileName(), m_file.error(), m_file.errorString()));
}

QString WorkbookFile::failureText(const QString &fileName, const QString &cause)
{
    return QStringLiteral("The Excel workbook \"%1\" was not saved. %2")
        .arg(QDir::toNativeSeparators(fileName), cause);
}

} // namespace corvane

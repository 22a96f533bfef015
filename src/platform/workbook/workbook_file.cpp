#include "platform/workbook/workbook_file.h"

#include "platform/files/write_failure.h"
#include "platform/workbook/workbook_writer.h"

#include <QtCore/QDir>

namespace corvane {

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
        m_file.fileName(), writeFailure(m_file.fileName(), m_file.error(), m_file.errorString()));
}

QString WorkbookFile::failureText(const QString &fileName, const QString &cause)
{
    return QStringLiteral("The Excel workbook \"%1\" was not saved. %2")
        .arg(QDir::toNativeSeparators(fileName), cause);
}

} // namespace corvane

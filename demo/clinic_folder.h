#pragma once

#include <QtCore/QString>

#include <stdexcept>

namespace corvane::demo {

/// A failure as a sentence for the user: what happened, where, and what to do.
class FolderError : public std::runtime_error
{
public:
    explicit FolderError(const QString &sentence)
        : std::runtime_error(sentence.toStdString())
    {
    }
    QString sentence() const { return QString::fromUtf8(what()); }
};

/// Writes corvane.ini, Data/*.db and Reports/*.rpt into `folder`, which is made when missing. Its
/// own files are replaced once all new ones are on the disk; every other file stays.
/// @throws FolderError
void writeClinicFolder(const QString &folder, int patientCount);

/// Writes clinic.sql: both databases as statements for SQL Server, and nothing else.
/// @throws FolderError
void writeClinicScript(const QString &folder, int patientCount);

} // namespace corvane::demo

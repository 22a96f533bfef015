#pragma once

#include "platform/database/value.h"
#include "platform/files/file_replacement.h"

#include <QtCore/QDateTime>
#include <QtCore/QStringList>

#include <functional>
#include <stdexcept>

namespace corvane {

class Rowset;

struct WorkbookOptions
{
    QString title{};
    QString author{};
    QString application = QStringLiteral("Corvane Reporter 1.0");
    QDateTime writtenAt{}; ///< invalid: the workbook does not say when it was written
    QString sheetName{}; ///< cleaned of what a sheet's name may not hold
    ValueTextStyle style{}; ///< how dates and times show
    /// Told now and then how many of the rows are done; false stops.
    std::function<bool(qsizetype rows)> progress{};
};

/// How often something could not be stored as it was, and the first cell concerned, as in
/// "Sheet1!C17".
struct WorkbookNote
{
    qsizetype count = 0;
    QString firstCell;

    bool operator==(const WorkbookNote &) const = default;
};

/// What a user is to be told about a workbook that was written.
struct WorkbookNotes
{
    WorkbookNote cutCells; ///< longer than 32,767 characters
    WorkbookNote replacedCharacters; ///< cells with control characters
    WorkbookNote textNumbers; ///< more than 15 digits, infinities and the like: stored as text
    WorkbookNote textDates; ///< outside 1 March 1900 to 31 December 9999: stored as text
    WorkbookNote hexCells; ///< bytes, stored as text like "0x0A1B"

    QStringList sentences() const;
    bool operator==(const WorkbookNotes &) const = default;
};

/// A workbook that could not be written; the words name the file and the cause.
class WorkbookError : public std::runtime_error
{
public:
    explicit WorkbookError(const QString &message);
    const QString &message() const { return m_message; }

private:
    QString m_message;
};

/// WorkbookOptions::progress said stop; nothing was written.
class WorkbookStopped : public std::exception
{
public:
    const char *what() const noexcept override { return "stopped"; }
};

/// Writes the rows as Excel workbook (.xls, BIFF8, [MS-XLS]): a heading row of the field names,
/// bold, frozen and with filter buttons, then every field of every row; after each 65,535 rows a
/// further sheet. Written beside the target and renamed into place, so that a failure leaves an
/// older file as it was. The same rows and options give the same bytes.
/// @throws WorkbookError for more than 256 fields, more than 2 GB and a file that cannot be written
/// @throws WorkbookStopped
WorkbookNotes writeWorkbook(
    const Rowset &rows, const QString &fileName, const WorkbookOptions &options = {});

/// The same in two steps, for several files that are to appear together: this one writes all there
/// is, and the caller commits it.
WorkbookNotes writeWorkbook(
    const Rowset &rows, FileReplacement &file, const WorkbookOptions &options = {});
FileReplacement workbookReplacement(const QString &fileName);

} // namespace corvane

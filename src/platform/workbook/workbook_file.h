#pragma once

#include <QtCore/QSaveFile>

namespace corvane {

/// The workbook's file: beside the target until commit() renames it into place, gone when it is not
/// committed.
class WorkbookFile
{
public:
    /// @throws WorkbookError when it cannot be opened
    explicit WorkbookFile(const QString &fileName);

    QIODevice &device() { return m_file; }
    /// @throws WorkbookError
    void commit();
    /// What happened to which file and what to do, for the device's latest error.
    QString failure() const;
    /// The same for a cause of another kind.
    static QString failureText(const QString &fileName, const QString &cause);

private:
    QSaveFile m_file;
};

} // namespace corvane

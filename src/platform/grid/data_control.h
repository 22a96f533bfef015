#pragma once

#include "platform/database/connection.h"

namespace corvane {

/// What a user is told who wants to save the rows of an empty data control.
inline const QString kNoRowsToSave = QStringLiteral("There are no rows to save. Run a report that shows some, then save it again.");

/// The data control: one query on one connection text, and the rows it gave when last refreshed.
/// The grid that the spreadsheet export saves shows these rows.
class DataControl
{
public:
    void setConnectionString(const QString &text) { m_connectionString = text; }
    const QString &connectionString() const { return m_connectionString; }

    void setRecordSource(const QString &sql) { m_recordSource = sql; }
    const QString &recordSource() const { return m_recordSource; }

    /// Runs the query: through `shared` when that is open on the same text, which costs nothing for a
    /// query it has just answered, else through a connection of its own. @throws DatabaseError
    void refresh(Connection *shared, const DriverSettings &settings);

    /// No rows to save: never refreshed, or refreshed and none came.
    bool isEmpty() const { return !m_rowset || m_rowset->rowCount() == 0; }
    /// Null until refreshed.
    const RowsetPtr &rowset() const { return m_rowset; }
    /// Drops query and rows; the connection text stays.
    void clear();

private:
    QString m_connectionString;
    QString m_recordSource;
    RowsetPtr m_rowset;
};

} // namespace corvane

#pragma once

#include "platform/database/driver.h"
#include "platform/database/rowset.h"

namespace corvane {

/// An open database connection. Destruction closes it.
class Connection
{
public:
    /// Picks the driver by provider and data source and opens it. DatabaseError when that fails.
    static std::unique_ptr<Connection> open(const QString &connectionText, const DriverSettings &settings);

    Connection(QString connectionText, std::unique_ptr<Driver> driver);

    /// The text that the connection was opened with. It holds the password: never show it.
    const QString &connectionText() const { return m_connectionText; }

    /// The whole result of a query. The latest result is kept, so that the test run, the report rows
    /// and the data control that ask for the same text cost one execution; forgetResult() drops it.
    RowsetPtr openRowset(const QString &sql, const QueryWatch &watch = {});
    void forgetResult();

private:
    QString m_connectionText;
    std::unique_ptr<Driver> m_driver;
    QString m_latestSql;
    RowsetPtr m_latest;
};

} // namespace corvane

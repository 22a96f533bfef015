#pragma once

#include "platform/database/connection_text.h"
#include "platform/database/rowset.h"

#include <QtCore/QStringList>

#include <functional>
#include <memory>

namespace corvane {

/// How long a driver waits, in seconds; 0 for ever.
struct TimeOuts {
    int login = 15;
    int query = 0;
    bool operator==(const TimeOuts &) const = default;
};

/// Where drivers look for files, how they read date literals, how long they wait.
struct DriverSettings {
    QString programFolder;
    int dateOrder = 0; ///< 0 month-day-year, 1 day-month-year, 2 year-month-day
    TimeOuts timeOuts {}; ///< only for servers
};

/// Called again and again while a query runs, on the caller's thread; what it throws ends the query.
using QueryWatch = std::function<void()>;

/// One open session with one kind of database. Closing happens on destruction.
class Driver
{
public:
    virtual ~Driver() = default;

    /// Runs one statement to its end and keeps all its rows. DatabaseError on any failure, a blank
    /// statement included.
    virtual RowsetPtr query(const QString &sql) = 0;

    /// Empty: nobody watches.
    void setWatch(QueryWatch watch) { m_watch = std::move(watch); }

protected:
    QueryWatch m_watch;
};

/// SQLite: `dataSource` is "sqlite:FOLDER", FOLDER relative to the program folder. The catalogue X is
/// its file X.db; every *.db there is attached under its own name, read only. A missing folder or
/// file is a failed connection and is never created.
std::unique_ptr<Driver> openEmbedded(const ConnectionText &text, const DriverSettings &settings);

/// Any ODBC driver: the SQL Server providers map to the vendor's driver or FreeTDS, every other
/// provider must be the name of an installed driver.
std::unique_ptr<Driver> openOdbc(const ConnectionText &text, const DriverSettings &settings);

/// Where openOdbc() goes for a connection text.
struct ServerPlace {
    QString driver;
    QString host;             ///< empty: only the driver knows
    int port = 0;             ///< 0: only the driver finds it, as for a named instance
    QString certificateCheck; ///< what is done about the server's certificate, as half a sentence
};

/// DatabaseError with cause Provider when no driver serves the text.
ServerPlace serverPlace(const ConnectionText &text);

/// The names of the ODBC drivers that this system has.
QStringList installedOdbcDrivers();

} // namespace corvane

#pragma once

#include "platform/database/connection.h"
#include "platform/database/error.h"
#include "platform/messages/message_boxes.h"

#include <QtCore/QString>

#include <memory>

namespace corvane {

/// The module state that forms and reports share: one for the whole program, handed down from main().
struct Reportr {
    std::unique_ptr<Connection> gConn; ///< the one open connection; null while closed
    QString gConnectString;            ///< main database
    QString gHvnConnectString;         ///< second database; empty when not configured or unreachable
    QString gDBName;                   ///< main database's name
    QString gHvnDBName;                ///< second database's name
    QString gIniFile;                  ///< path of corvane.ini
    QString gRptFile;                  ///< path of the open report definition
    qint16 gDateOrder = 0;             ///< 0 month-day-year, 1 day-month-year, 2 year-month-day
    QString gUserID;                   ///< as typed at logon; empty until a logon was accepted
    qint16 gAccessType = 0;
    QString gPatientID;                ///< empty: no patient chosen
    QString gPatientText;

    QString programFolder;
    bool loggedOn = false;

    TimeOuts mainTimeOuts;
    TimeOuts hvnTimeOuts;

    /// Whether a connection text is the second database's.
    bool isSecond(const QString &connectString) const
    {
        return !gHvnConnectString.isEmpty() && connectString == gHvnConnectString && connectString != gConnectString;
    }
    /// How the connection with that text is opened.
    DriverSettings drivers(const QString &connectString) const
    {
        return {programFolder, gDateOrder, isSecond(connectString) ? hvnTimeOuts : mainTimeOuts};
    }
    /// What to look at after a failure on that connection, as a sentence; empty: nothing in corvane.ini.
    QString advice(FailureCause cause, const QString &connectString) const;

    /// Closes gConn if it is open.
    void closeConn() { gConn.reset(); }
    /// Opens gConn anew. @throws DatabaseError
    void openConn(const QString &connectString) { gConn = Connection::open(connectString, drivers(connectString)); }
};

/// Whether a file of that name exists; folders and unreachable drives do not count.
bool FileExists(const QString &path);

/// The file of that name in a folder without regard to case; empty when there is none.
QString findFile(const QString &folder, const QString &name);

} // namespace corvane

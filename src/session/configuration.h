#pragma once

#include <QtCore/QString>

namespace corvane {

struct Reportr;

/// Section "SQLServer" of corvane.ini.
/// @throws RunTimeFault when the stored password cannot be unscrambled; its words do not show it.
QString buildConnectString(const QString &iniFile);

/// Section "HALVERN": the connection text of the second database, built even when no server is named.
QString buildHvnConnectString(const QString &iniFile);

} // namespace corvane

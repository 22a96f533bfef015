#pragma once

#include "platform/database/driver.h"
#include "platform/database/error.h"

namespace corvane {

/// The two sections of corvane.ini that describe a database.
inline constexpr QStringView kMainSection(u"SQLServer");
inline constexpr QStringView kSecondSection(u"HALVERN");

/// LoginTimeout and QueryTimeout of a section, in seconds; absent or no whole number from 0 to
/// 3600: 15 and none.
TimeOuts configuredTimeOuts(const QString &iniFile, QStringView section);

/// What to say after the program's own message about a failure: what it stumbled over, which key of
/// corvane.ini holds that and what stands there now, and what to do. Empty when the cause lies
/// elsewhere. Never a password.
QString connectionAdvice(FailureCause cause, const QString &iniFile, QStringView section);

} // namespace corvane

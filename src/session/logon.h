#pragma once

#include <QtCore/QString>

namespace corvane {

class MessageBoxes;
struct Reportr;

inline constexpr auto kBuiltInNotice = QLatin1StringView(
    "This application contains protected health information. The system should only be accessed by authorized users.");

/// Whether the logon boxes let a character in: codes 48 to 126 without the bar, which separates lists.
constexpr bool passesKeyFilter(char16_t code) { return code >= 48 && code <= 126 && code != u'|'; }
/// Whether every character passes; an empty text does.
bool passesKeyFilter(QStringView text);

/// The notice of the settings table, or the built-in one when there is none.
QString GetDBSettings(Reportr &state);

/// The query that looks a user up. The user id stands in it as typed: passesKeyFilter keeps quotes out.
/// @throws RunTimeFault when the password cannot be scrambled.
QString logonQuery(const QString &userId, const QString &password);

/// The reporter's digit of a screen access text: its 8th character, 0 when that is missing or no digit.
int reporterAccess(QStringView screenAccess);

/// Checks user and password against the passwords table, shows the message of a refusal, and on
/// success sets gUserID and gAccessType.
bool logOn(Reportr &state, MessageBoxes &boxes, const QString &userId, const QString &password);

} // namespace corvane

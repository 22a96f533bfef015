#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

namespace corvane::test::tds {

/// The ENCRYPTION option of both sides' pre-login messages ([MS-TDS] 2.2.6.5).
enum class Encryption : quint8 { Off = 0, On = 1, NotSupported = 2, Required = 3 };

/// What the client offers. WireFault when the message is none.
Encryption offeredEncryption(QByteArrayView preLogin);
/// The server's pre-login message.
QByteArray preLoginReply(Encryption encryption);

/// What the server looks at in LOGIN7 ([MS-TDS] 2.2.6.4).
struct Login
{
    quint32 version = 0; ///< of the protocol: 0x74000004 is 7.4
    quint32 packetSize = 0;
    QString hostName;
    QString userName;
    QString password;
    QString applicationName;
    QString serverName;
    QString database;
    bool isEncrypted = false; ///< as it arrived; the session tells it
};

/// WireFault when the message is none.
Login readLogin(QByteArrayView login7);

} // namespace corvane::test::tds

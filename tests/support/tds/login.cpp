#include "support/tds/login.h"

#include "support/tds/wire.h"

#include <QtCore/QtEndian>

namespace corvane::test::tds {

namespace {

/// Options of the pre-login message.
enum PreLoginOption : quint8 { Version = 0, EncryptionOption = 1, Mars = 4, Terminator = 0xff };

constexpr qsizetype kVersionAt = 4;
constexpr qsizetype kPacketSizeAt = 8;
/// Places of the texts' offset and length, two bytes each, from the start of the message.
constexpr qsizetype kHostName = 36;
constexpr qsizetype kUserName = 40;
constexpr qsizetype kPassword = 44;
constexpr qsizetype kApplicationName = 48;
constexpr qsizetype kServerName = 52;
constexpr qsizetype kDatabase = 68;

QByteArrayView part(QByteArrayView message, qsizetype offset, qsizetype size)
{
    if (offset < 0 || size < 0 || offset > message.size() || size > message.size() - offset)
        throw WireFault("a field lies outside its message");
    return message.sliced(offset, size);
}

quint64 number(QByteArrayView message, qsizetype offset, int size)
{
    return WireReader(part(message, offset, size)).integer(size);
}

QByteArrayView textField(QByteArrayView message, qsizetype place)
{
    return part(message, qsizetype(number(message, place, 2)),
        2 * qsizetype(number(message, place + 2, 2)));
}

QString text(QByteArrayView field)
{
    return WireReader(field).utf16(field.size() / 2);
}

/// Each byte has its halves exchanged and is combined with 0xA5 on its way.
QString clearPassword(QByteArrayView field)
{
    QByteArray clear;
    for (const char c : field) {
        const int byte = quint8(c) ^ 0xa5;
        clear += char((byte << 4 | byte >> 4) & 0xff);
    }
    return text(clear);
}

} // namespace

Encryption offeredEncryption(QByteArrayView preLogin)
{
    for (qsizetype at = 0; quint8(number(preLogin, at, 1)) != Terminator; at += 5) {
        if (number(preLogin, at, 1) != EncryptionOption)
            continue;
        const auto offset = qFromBigEndian<quint16>(part(preLogin, at + 1, 2).data());
        return Encryption(number(preLogin, offset, 1));
    }
    return Encryption::NotSupported;
}

QByteArray preLoginReply(Encryption encryption)
{
    const QByteArray version("\x0f\x00\x07\xd0\x00\x00", 6);
    const QByteArray values = version + char(encryption) + '\0';
    constexpr int kValuesAt = 3 * 5 + 1;
    QByteArray options;
    const auto add = [&](PreLoginOption option, int offset, int size) {
        const char entry[] = {char(option), 0, char(kValuesAt + offset), 0, char(size)};
        options.append(entry, sizeof entry);
    };
    add(Version, 0, 6);
    add(EncryptionOption, 6, 1);
    add(Mars, 7, 1);
    return options + char(Terminator) + values;
}

Login readLogin(QByteArrayView login7)
{
    Login login;
    login.version = quint32(number(login7, kVersionAt, 4));
    login.packetSize = quint32(number(login7, kPacketSizeAt, 4));
    login.hostName = text(textField(login7, kHostName));
    login.userName = text(textField(login7, kUserName));
    login.password = clearPassword(textField(login7, kPassword));
    login.applicationName = text(textField(login7, kApplicationName));
    login.serverName = text(textField(login7, kServerName));
    login.database = text(textField(login7, kDatabase));
    return login;
}

} // namespace corvane::test::tds

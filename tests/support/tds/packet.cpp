#include "support/tds/packet.h"

#include "support/tds/wire.h"

#include <QtCore/QtEndian>

#include <algorithm>

namespace corvane::test::tds {

namespace {

constexpr int kHeaderSize = 8;
constexpr quint8 kEndOfMessage = 1;

QByteArray header(PacketType type, bool isLast, qsizetype packetSize, int number)
{
    QByteArray bytes(kHeaderSize, '\0');
    bytes[0] = char(type);
    bytes[1] = char(isLast ? kEndOfMessage : 0);
    qToBigEndian(quint16(packetSize), bytes.data() + 2);
    bytes[6] = char(number);
    return bytes;
}

} // namespace

void Cutter::arm(int packets, int headerBytes)
{
    m_sent = 0;
    m_headerBytes = headerBytes;
    m_packets = packets;
}

Message PacketChannel::read()
{
    Message message;
    for (bool isLast = false; !isLast;) {
        const QByteArray head = readBytes(kHeaderSize);
        message.type = PacketType(head[0]);
        isLast = quint8(head[1]) & kEndOfMessage;
        message.data += readBytes(qFromBigEndian<quint16>(head.constData() + 2) - kHeaderSize);
    }
    return message;
}

void PacketChannel::write(PacketType type, QByteArrayView data)
{
    const qsizetype room = m_packetSize - kHeaderSize;
    int number = 0;
    do {
        const QByteArrayView part = data.first(std::min(room, data.size()));
        data = data.sliced(part.size());
        const qsizetype size = kHeaderSize + part.size();
        writePacket(header(type, data.isEmpty(), size, ++number) + part);
    } while (!data.isEmpty());
}

void PacketChannel::writePacket(const QByteArray &packet)
{
    if (m_cutter.cutsHere())
        cut(QByteArrayView(packet).first(m_cutter.headerBytes()));
    m_cutter.countPacket(); // before the client can know of it
    writeBytes(packet);
    if (m_cutter.cutsHere() && m_cutter.headerBytes() == 0)
        cut({});
}

void PacketChannel::cut(QByteArrayView lastBytes)
{
    if (!lastBytes.isEmpty())
        writeBytes(lastBytes);
    m_socket.shutDown();
    throw Disconnected();
}

void PacketChannel::writeBytes(QByteArrayView bytes)
{
    if (m_tls)
        m_socket.write(m_tls->encrypted(bytes));
    else
        m_socket.write(bytes);
}

QByteArray PacketChannel::readBytes(qsizetype size)
{
    if (!m_tls)
        return m_socket.read(size);
    while (m_plain.size() < size)
        m_plain += m_tls->decrypted(m_socket.readSome());
    const QByteArray bytes = m_plain.first(size);
    m_plain.remove(0, size);
    return bytes;
}

void PacketChannel::startTls(const Certificate &certificate)
{
    auto tls = std::make_unique<Tls>(certificate);
    while (!tls->isEstablished()) {
        const Message records = read();
        if (records.type != PacketType::PreLogin)
            throw WireFault("the client sends no TLS handshake");
        const QByteArray reply = tls->handshake(records.data);
        if (!reply.isEmpty())
            write(PacketType::PreLogin, reply);
    }
    m_tls = std::move(tls);
}

} // namespace corvane::test::tds

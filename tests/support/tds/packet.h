#pragma once

#include "support/tds/transport.h"

#include <atomic>
#include <memory>

namespace corvane::test::tds {

/// [MS-TDS] 2.2.3.1.1.
enum class PacketType : quint8 {
    SqlBatch = 1,
    RemoteCall = 3,
    TabularResult = 4,
    Attention = 6,
    Login = 16,
    PreLogin = 18
};

/// A whole message, put together from its packets.
struct Message
{
    PacketType type = PacketType::SqlBatch;
    QByteArray data;
};

/// Breaks a server's connections at one packet, and every later one until `disarm`. The client's
/// messages are read whole in between, so these are all the places between packets of either side.
class Cutter
{
public:
    /// Cuts when `packets` packets have gone from now on, and `headerBytes` (0 to 7) bytes of the
    /// next one's header.
    void arm(int packets, int headerBytes);
    /// Cuts no more and counts from 0 again.
    void disarm() { arm(-1, 0); }
    int packetsSent() const { return m_sent; }

    bool cutsHere() const { return m_packets >= 0 && m_sent >= m_packets; }
    int headerBytes() const { return m_headerBytes; }
    void countPacket() { ++m_sent; }

private:
    std::atomic<int> m_packets = -1;
    std::atomic<int> m_headerBytes = 0;
    std::atomic<int> m_sent = 0;
};

/// Messages over one connection, in packets of the agreed size, encrypted or plain.
/// `Disconnected` when the connection ends.
class PacketChannel
{
public:
    PacketChannel(Socket &socket, Cutter &cutter)
        : m_socket(socket)
        , m_cutter(cutter)
    {
    }

    Message read();
    void write(PacketType type, QByteArrayView data);

    void setPacketSize(int size) { m_packetSize = size; }
    /// Runs the handshake; everything afterwards is encrypted.
    void startTls(const Certificate &certificate);
    /// Everything afterwards is plain again: only the logon was to be encrypted.
    void endTls() { m_tls.reset(); }

private:
    QByteArray readBytes(qsizetype size);
    void writePacket(const QByteArray &packet);
    void writeBytes(QByteArrayView bytes);
    [[noreturn]] void cut(QByteArrayView lastBytes);

    Socket &m_socket;
    Cutter &m_cutter;
    std::unique_ptr<Tls> m_tls;
    QByteArray m_plain; ///< decrypted and not read yet
    int m_packetSize = 4096;
};

} // namespace corvane::test::tds

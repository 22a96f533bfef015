#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <functional>
#include <memory>

namespace corvane::test::tds {

/// The connection is gone: closed by the client, or cut on purpose. Ends a session.
struct Disconnected
{
};

/// One accepted connection as a stream of bytes. Reading and writing block.
class Socket
{
public:
    explicit Socket(int descriptor);
    ~Socket();
    Q_DISABLE_COPY_MOVE(Socket)

    QByteArray read(qsizetype size);
    /// What has arrived, at least one byte.
    QByteArray readSome();
    void write(QByteArrayView data);
    /// Both directions, at once; from any thread. What was written before still arrives.
    void shutDown();

private:
    int m_descriptor;
};

/// The server's certificate with its key, both in PEM files. Empty: no encryption.
struct Certificate
{
    QString certificateFile;
    QString keyFile;

    bool isEmpty() const { return certificateFile.isEmpty(); }
};

/// The server's end of TLS between memory buffers: during the handshake the protocol carries the
/// records in its own packets ([MS-TDS] 2.2.6.5, 3.3.5.2).
class Tls
{
public:
    /// WireFault when the certificate cannot be used.
    explicit Tls(const Certificate &certificate);
    ~Tls();
    Q_DISABLE_COPY_MOVE(Tls)

    /// Takes the client's records and gives the server's; complete when `isEstablished`.
    QByteArray handshake(QByteArrayView records);
    bool isEstablished() const;

    QByteArray encrypted(QByteArrayView plain);
    /// The plain bytes of the records; empty while a record is incomplete.
    QByteArray decrypted(QByteArrayView records);

private:
    QByteArray outgoing();

    struct Handles;
    std::unique_ptr<Handles> m_handles;
};

} // namespace corvane::test::tds

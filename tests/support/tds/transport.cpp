#include "support/tds/transport.h"

#include "support/tds/wire.h"

#include <QtCore/QFile>

#include <openssl/err.h>
#include <openssl/ssl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace corvane::test::tds {

namespace {

constexpr int kBufferSize = 1 << 16;

void free(SSL_CTX *context)
{
    SSL_CTX_free(context);
}

void free(SSL *session)
{
    SSL_free(session);
}

struct Freed
{
    template <typename Handle> void operator()(Handle *handle) const { free(handle); }
};

/// The reason for the refusal is the client's to tell; here it must not stay for the next session.
QByteArray latestReason()
{
    const unsigned long code = ERR_get_error();
    ERR_clear_error();
    return QByteArray("TLS: ") + (code ? ERR_reason_error_string(code) : "no reason");
}

} // namespace

Socket::Socket(int descriptor)
    : m_descriptor(descriptor)
{
}

Socket::~Socket()
{
    close(m_descriptor);
}

QByteArray Socket::read(qsizetype size)
{
    QByteArray data(size, Qt::Uninitialized);
    for (qsizetype at = 0; at < size;) {
        const ssize_t got = recv(m_descriptor, data.data() + at, size_t(size - at), 0);
        if (got <= 0)
            throw Disconnected();
        at += got;
    }
    return data;
}

QByteArray Socket::readSome()
{
    QByteArray data(kBufferSize, Qt::Uninitialized);
    const ssize_t got = recv(m_descriptor, data.data(), size_t(data.size()), 0);
    if (got <= 0)
        throw Disconnected();
    data.truncate(got);
    return data;
}

void Socket::write(QByteArrayView data)
{
    while (!data.isEmpty()) {
        const ssize_t sent = send(m_descriptor, data.data(), size_t(data.size()), MSG_NOSIGNAL);
        if (sent <= 0)
            throw Disconnected();
        data = data.sliced(sent);
    }
}

void Socket::shutDown()
{
    shutdown(m_descriptor, SHUT_RDWR);
}

struct Tls::Handles
{
    std::unique_ptr<SSL_CTX, Freed> context{SSL_CTX_new(TLS_server_method())};
    std::unique_ptr<SSL, Freed> session;
    BIO *in = BIO_new(BIO_s_mem()); ///< belongs to the session
    BIO *out = BIO_new(BIO_s_mem()); ///< belongs to the session
};

Tls::Tls(const Certificate &certificate)
    : m_handles(std::make_unique<Handles>())
{
    SSL_CTX *context = m_handles->context.get();
    // Later versions send records after the handshake, for which this protocol has no place.
    SSL_CTX_set_max_proto_version(context, TLS1_2_VERSION);
    const QByteArray file = QFile::encodeName(certificate.certificateFile);
    const QByteArray key = QFile::encodeName(certificate.keyFile);
    const bool usable = SSL_CTX_use_certificate_chain_file(context, file.constData()) == 1
        && SSL_CTX_use_PrivateKey_file(context, key.constData(), SSL_FILETYPE_PEM) == 1;
    m_handles->session.reset(SSL_new(context));
    SSL_set_bio(m_handles->session.get(), m_handles->in, m_handles->out);
    SSL_set_accept_state(m_handles->session.get());
    if (!usable)
        throw WireFault(latestReason());
}

Tls::~Tls() = default;

QByteArray Tls::outgoing()
{
    QByteArray records(qsizetype(BIO_ctrl_pending(m_handles->out)), Qt::Uninitialized);
    if (!records.isEmpty())
        BIO_read(m_handles->out, records.data(), int(records.size()));
    return records;
}

QByteArray Tls::handshake(QByteArrayView records)
{
    BIO_write(m_handles->in, records.data(), int(records.size()));
    const int code = SSL_do_handshake(m_handles->session.get());
    if (code != 1 && SSL_get_error(m_handles->session.get(), code) != SSL_ERROR_WANT_READ)
        throw WireFault(latestReason());
    return outgoing();
}

bool Tls::isEstablished() const
{
    return SSL_is_init_finished(m_handles->session.get());
}

QByteArray Tls::encrypted(QByteArrayView plain)
{
    if (SSL_write(m_handles->session.get(), plain.data(), int(plain.size())) != plain.size())
        throw WireFault(latestReason());
    return outgoing();
}

QByteArray Tls::decrypted(QByteArrayView records)
{
    BIO_write(m_handles->in, records.data(), int(records.size()));
    QByteArray plain;
    QByteArray part(kBufferSize, Qt::Uninitialized);
    for (int got; (got = SSL_read(m_handles->session.get(), part.data(), kBufferSize)) > 0;)
        plain.append(part.constData(), got);
    if (SSL_get_shutdown(m_handles->session.get()) & SSL_RECEIVED_SHUTDOWN)
        throw Disconnected();
    ERR_clear_error();
    return plain;
}

} // namespace corvane::test::tds

#include "support/tds/session.h"

#include "platform/database/error.h"
#include "support/tds/server.h"

namespace corvane::test::tds {

namespace {

constexpr quint32 kVersion74 = 0x74000004;
constexpr int kSmallestPacket = 512;

Encryption agreedEncryption(Encryption offered, const ServerSettings &settings)
{
    if (settings.certificate.isEmpty())
        return Encryption::NotSupported;
    if (offered == Encryption::On || offered == Encryption::Required)
        return Encryption::On;
    if (settings.requiresEncryption)
        return Encryption::Required;
    return offered;
}

ServerMessage loginFailed(const Login &login)
{
    return {18456, 14, QStringLiteral("Login failed for user '%1'.").arg(login.userName)};
}

/// Every request starts with headers that this server has no use for ([MS-TDS] 2.2.5.3).
WireReader withoutHeaders(const QByteArray &data)
{
    WireReader reader(data);
    const auto size = qsizetype(reader.integer(4));
    reader.bytes(size - 4);
    return reader;
}

/// What the program asks before a designed report; there is no procedure here.
bool isProcedureLookup(const QString &statement)
{
    return statement.startsWith(u"IF  EXISTS (SELECT * FROM sys.objects WHERE object_id = OBJECT_ID(N'[dbo].[");
}

/// What a driver says about its session, not about data.
bool isSessionSetting(const QString &statement)
{
    return statement.startsWith(u"set ", Qt::CaseInsensitive);
}

bool isQuery(const QString &statement)
{
    const QString start = statement.trimmed();
    return start.startsWith(u"select", Qt::CaseInsensitive)
        || start.startsWith(u"with", Qt::CaseInsensitive);
}

struct SendPart
{
    TokenWriter &out;
    Done token;
    bool isLast;

    int status(int bits) const { return bits | (isLast ? Final : More); }

    void operator()(const ResultRows &result) const
    {
        out.columns(result.columns);
        for (const QList<Cell> &row : result.rows)
            out.row(result.columns, row);
        if (result.failure)
            return (*this)(*result.failure);
        out.done(token, status(Count), result.rows.size());
    }
    void operator()(const RowCount &count) const { out.done(token, status(Count), count.rows); }
    void operator()(const ServerMessage &message) const
    {
        constexpr int kLowestError = 11;
        out.message(message);
        if (message.severity >= kLowestError)
            out.done(token, status(Error));
        else if (isLast)
            out.done(token, Final);
    }
    void operator()(const NoAnswer &) const { }
};

} // namespace

Session::Session(Server &server, Socket &socket)
    : m_server(server)
    , m_socket(socket)
    , m_channel(socket, server.cutter())
{
}

void Session::run()
{
    try {
        serve();
    } catch (const Disconnected &) {
        // Deliberate: the client went, or was cut off.
    } catch (const WireFault &fault) {
        m_server.noteRefused(QString::fromUtf8(fault.what()));
    }
    m_socket.shutDown();
}

void Session::serve()
{
    preLogin();
    if (!logIn())
        return;
    for (;;)
        answer(readAnswered());
}

/// The next message that is to be answered at all.
Message Session::readAnswered()
{
    Message message = m_channel.read();
    while (m_server.isSilent())
        message = m_channel.read();
    return message;
}

void Session::preLogin()
{
    const Message message = readAnswered();
    if (message.type != PacketType::PreLogin)
        throw WireFault("a session that does not start with a pre-login message");
    m_encryption = agreedEncryption(offeredEncryption(message.data), m_server.settings());
    m_channel.write(PacketType::TabularResult, preLoginReply(m_encryption));
    if (m_encryption == Encryption::NotSupported)
        return;
    try {
        m_channel.startTls(m_server.settings().certificate);
    } catch (const WireFault &) {
        throw Disconnected(); // the client does not like the certificate
    }
}

bool Session::logIn()
{
    const Message message = readAnswered();
    if (message.type != PacketType::Login)
        throw WireFault("no LOGIN7 message behind the pre-login");
    if (m_encryption == Encryption::Off)
        m_channel.endTls();
    Login login = readLogin(message.data);
    login.isEncrypted = m_encryption != Encryption::NotSupported;
    m_server.noteLogin(login, Server::Logon::Tried);
    if (login.version != kVersion74)
        throw WireFault("a protocol version other than 7.4");
    const auto user = m_server.settings().users.constFind(login.userName);
    if (user == m_server.settings().users.constEnd() || *user != login.password) {
        refuseLogin({loginFailed(login)});
        return false;
    }
    if (!openDatabase(login))
        return false;
    m_server.noteLogin(login, Server::Logon::Accepted);
    acceptLogin(login);
    return true;
}

bool Session::openDatabase(const Login &login)
{
    try {
        m_answerer = m_server.settings().open(login.database);
        return true;
    } catch (const DatabaseError &) {
        const QString text = QStringLiteral("Cannot open database \"%1\" requested by the login. "
                                            "The login failed.");
        refuseLogin({{4060, 11, text.arg(login.database)}, loginFailed(login)});
        return false;
    }
}

void Session::refuseLogin(const QList<ServerMessage> &messages)
{
    TokenWriter out;
    for (const ServerMessage &message : messages)
        out.message(message);
    out.done(Done::Batch, Error);
    m_channel.write(PacketType::TabularResult, out.data());
}

void Session::acceptLogin(const Login &login)
{
    constexpr int kDefaultSize = 4096;
    const int size = std::max(m_server.settings().packetSize, kSmallestPacket);
    TokenWriter out;
    out.changed(Environment::Database, login.database, QStringLiteral("master"));
    out.message({5701, 0, QStringLiteral("Changed database context to '%1'.").arg(login.database)});
    out.changedCollation();
    out.changed(Environment::Language, QStringLiteral("us_english"), {});
    out.message({5703, 0, QStringLiteral("Changed language setting to us_english.")});
    out.loginAcknowledged(login.version);
    out.changed(Environment::PacketSize, QString::number(size), QString::number(kDefaultSize));
    out.done(Done::Batch, Final);
    m_channel.write(PacketType::TabularResult, out.data());
    m_channel.setPacketSize(size);
}

void Session::answer(const Message &message)
{
    switch (message.type) {
    case PacketType::SqlBatch:
        return answerBatch(message.data);
    case PacketType::RemoteCall:
        return answerCall(message.data);
    case PacketType::Attention:
        return answerAttention();
    default:
        refuse(QStringLiteral("packet type %1").arg(int(message.type)));
    }
}

void Session::answerBatch(const QByteArray &data)
{
    WireReader reader = withoutHeaders(data);
    QByteArray text;
    while (!reader.atEnd())
        text += reader.bytes(2);
    const QString statement = WireReader(text).utf16(text.size() / 2);
    m_server.noteStatement(statement);
    if (const auto scripted = m_server.scripted(statement))
        return send(*scripted, Kind::Batch);
    if (isSessionSetting(statement) || isProcedureLookup(statement))
        return send({}, Kind::Batch);
    if (!isQuery(statement))
        return refuse(statement);
    send(answerTo(statement), Kind::Batch);
}

Answer Session::answerTo(const QString &statement)
{
    try {
        return m_answerer(statement);
    } catch (const DatabaseError &error) {
        return {ServerMessage{50000, 16, error.description()}};
    }
}

/// Procedures by their name and without parameters ([MS-TDS] 2.2.6.6).
void Session::answerCall(const QByteArray &data)
{
    constexpr int kByNumber = 0xffff;
    WireReader reader = withoutHeaders(data);
    const auto length = int(reader.integer(2));
    if (length == kByNumber)
        return refuse(QStringLiteral("system procedure %1").arg(reader.integer(2)));
    const QString name = reader.utf16(length);
    reader.integer(2); // options
    m_server.noteStatement(u"call " + name);
    const auto scripted = m_server.scripted(name);
    if (!reader.atEnd() || !scripted)
        return refuse(u"call " + name);
    send(*scripted, Kind::Call);
}

void Session::answerAttention()
{
    TokenWriter out;
    out.done(Done::Batch, DoneStatus::Attention);
    m_channel.write(PacketType::TabularResult, out.data());
}

void Session::refuse(const QString &what)
{
    m_server.noteRefused(what);
    send({ServerMessage{40000, 16, u"This server does not implement: " + what}}, Kind::Batch);
}

void Session::send(const Answer &answer, Kind kind)
{
    if (std::holds_alternative<NoAnswer>(answer.value(0, RowCount())))
        return;
    TokenWriter out;
    const bool isCall = kind == Kind::Call;
    for (qsizetype i = 0; i < answer.size(); ++i) {
        const bool isLast = !isCall && i + 1 == answer.size();
        std::visit(SendPart{out, isCall ? Done::InProcedure : Done::Batch, isLast}, answer[i]);
    }
    if (isCall) {
        out.returnStatus(0);
        out.done(Done::Procedure, Final);
    } else if (answer.isEmpty()) {
        out.done(Done::Batch, Final);
    }
    m_channel.write(PacketType::TabularResult, out.data());
}

} // namespace corvane::test::tds

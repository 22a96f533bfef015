#pragma once

#include "support/tds/login.h"
#include "support/tds/packet.h"
#include "support/tds/token_writer.h"

namespace corvane::test::tds {

class Server;

/// One connection from the pre-login to its end.
class Session
{
public:
    Session(Server &server, Socket &socket);

    /// Returns when the connection ends, whoever ended it.
    void run();

private:
    void serve();
    void preLogin();
    Message readAnswered();
    bool logIn();
    bool openDatabase(const Login &login);
    void refuseLogin(const QList<ServerMessage> &messages);
    void acceptLogin(const Login &login);

    void answer(const Message &message);
    void answerBatch(const QByteArray &data);
    void answerCall(const QByteArray &data);
    void answerAttention();
    void refuse(const QString &what);

    Answer answerTo(const QString &statement);
    /// In a call every DONE belongs to the procedure, and a return status comes before the last.
    enum class Kind { Batch, Call };
    void send(const Answer &answer, Kind kind);

    Server &m_server;
    Socket &m_socket;
    PacketChannel m_channel;
    Encryption m_encryption = Encryption::NotSupported;
    Answerer m_answerer;
};

} // namespace corvane::test::tds

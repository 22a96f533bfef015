#include "support/cutting_proxy.h"

#include <arpa/inet.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>

namespace corvane::test {

namespace {

constexpr int kLookAroundMs = 20;

sockaddr_in loopback(int port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(in_port_t(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

int connected(int port)
{
    const int handle = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address = loopback(port);
    if (connect(handle, reinterpret_cast<sockaddr *>(&address), sizeof address) == 0)
        return handle;
    close(handle);
    return -1;
}

/// Ends a connection with a reset: what was sent is not waited for.
void reset(int handle)
{
    const linger atOnce{1, 0};
    setsockopt(handle, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
    close(handle);
}

} // namespace

CuttingProxy::CuttingProxy(int serverPort)
    : m_serverPort(serverPort)
    , m_listener(socket(AF_INET, SOCK_STREAM, 0))
{
    sockaddr_in address = loopback(0);
    socklen_t size = sizeof address;
    auto *any = reinterpret_cast<sockaddr *>(&address);
    if (bind(m_listener, any, size) == 0 && listen(m_listener, 8) == 0
        && getsockname(m_listener, any, &size) == 0)
        m_port = ntohs(address.sin_port);
    m_accepting = std::thread([this] { accept(); });
}

CuttingProxy::~CuttingProxy()
{
    m_stop = true;
    m_accepting.join();
    for (std::thread &session : m_sessions)
        session.join();
    close(m_listener);
}

void CuttingProxy::cutNow()
{
    ++m_cuts;
}

void CuttingProxy::accept()
{
    while (!m_stop) {
        pollfd listener{m_listener, POLLIN, 0};
        if (poll(&listener, 1, kLookAroundMs) <= 0)
            continue;
        const int client = ::accept(m_listener, nullptr, nullptr);
        if (client >= 0)
            m_sessions.emplace_back([this, client] { serve(client); });
    }
}

bool CuttingProxy::pass(int from, int to, bool fromServer, long &sent)
{
    std::array<char, 4096> piece;
    size_t room = piece.size();
    const long limit = m_cutAfter;
    if (fromServer && limit != kNever)
        room = size_t(std::clamp(limit - sent, 0L, long(room)));
    const ssize_t got = room == 0 ? 0 : recv(from, piece.data(), room, 0);
    if (got <= 0 || send(to, piece.data(), size_t(got), MSG_NOSIGNAL) != got)
        return false;
    if (fromServer)
        m_sent = sent += got;
    return !fromServer || limit == kNever || sent < limit;
}

void CuttingProxy::serve(int client)
{
    const int server = connected(m_serverPort);
    const int cutsBefore = m_cuts;
    long sent = 0;
    m_sent = 0;
    bool open = server >= 0 && m_cutAfter != 0;
    while (open && !m_stop && m_cuts == cutsBefore) {
        if (m_silent) {
            poll(nullptr, 0, kLookAroundMs);
            continue;
        }
        std::array<pollfd, 2> ends{pollfd{client, POLLIN, 0}, pollfd{server, POLLIN, 0}};
        if (poll(ends.data(), ends.size(), kLookAroundMs) <= 0)
            continue;
        if (ends[0].revents != 0)
            open = pass(client, server, false, sent);
        if (open && ends[1].revents != 0)
            open = pass(server, client, true, sent);
    }
    // The end after an exact number of bytes must arrive behind them.
    shutdown(client, SHUT_RDWR);
    close(client);
    if (server >= 0)
        reset(server);
}

} // namespace corvane::test

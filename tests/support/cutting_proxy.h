#pragma once

#include <atomic>
#include <thread>
#include <vector>

namespace corvane::test {

/// Stands between a client and a server on 127.0.0.1 and passes on what each sends, in a thread of
/// its own, until it is told to break the connection or to fall silent.
class CuttingProxy
{
public:
    static constexpr long kNever = -1;

    explicit CuttingProxy(int serverPort);
    ~CuttingProxy();
    CuttingProxy(const CuttingProxy &) = delete;
    CuttingProxy &operator=(const CuttingProxy &) = delete;

    int port() const { return m_port; }

    /// Breaks each connection once the server has sent so many bytes on it; kNever: not at all.
    void cutAfter(long bytes) { m_cutAfter = bytes; }
    /// Accepts connections and passes nothing on any more.
    void fallSilent(bool silent) { m_silent = silent; }
    /// Breaks the connections that there are now.
    void cutNow();
    /// What the server has sent on the latest connection, in bytes.
    long sent() const { return m_sent; }

private:
    void accept();
    void serve(int client);
    /// Passes on what is there; false at the end of the connection.
    bool pass(int from, int to, bool fromServer, long &sent);

    int m_serverPort;
    int m_port = 0;
    int m_listener = -1;
    std::atomic<long> m_cutAfter = kNever;
    std::atomic<bool> m_silent = false;
    std::atomic<long> m_sent = 0;
    std::atomic<int> m_cuts = 0;
    std::atomic<bool> m_stop = false;
    std::vector<std::thread> m_sessions; ///< only the accepting thread adds
    std::thread m_accepting;
};

} // namespace corvane::test

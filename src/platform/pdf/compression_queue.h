#pragma once

#include "platform/pdf/compressor.h"

#include <condition_variable>
#include <exception>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

namespace corvane {

/// Deflates blocks on several threads and hands the results back on the caller's thread, in the
/// order in which the blocks came, so that the outcome never depends on the number of threads. The
/// other threads see bytes only. A few blocks are under way at a time, however many there are. One
/// caller.
class CompressionQueue
{
public:
    using Take = std::function<void(std::shared_ptr<Buffer>)>;
    static constexpr int kMostThreads = 4; ///< more would wait for the one that makes the blocks
    static constexpr size_t kMostWaiting
        = 16'777'216; ///< bytes under way, unless one block has more

    /// @param threads the caller's own included; below 1: as many as the machine has
    explicit CompressionQueue(int threads);
    /// Drops what was not taken; no thread outlives it.
    ~CompressionQueue();
    Q_DISABLE_COPY_MOVE(CompressionQueue)

    /// `take` gets the compressed bytes: in a later add() or in finish(). Both throw what a thread
    /// threw.
    void add(std::string_view bytes, Take take);
    /// Returns when everything was taken; more may be added afterwards.
    void finish();

private:
    struct Job
    {
        std::string bytes;
        Take take;
        std::shared_ptr<Buffer> result;
        std::exception_ptr failure;
        bool isDone = false;
    };

    Job &job(size_t number) { return m_ring[number % m_ring.size()]; }
    void takeOldest();
    void work(std::unique_lock<std::mutex> &lock, Compressor &compressor);
    void serve(Compressor &compressor);

    std::vector<Job> m_ring;
    size_t m_taken = 0; ///< jobs are numbered from 0: so many were handed back,
    size_t m_begun = 0; ///< so many begun,
    size_t m_added = 0; ///< so many added
    size_t m_waiting = 0; ///< bytes of the jobs that were not taken
    bool m_isEnding = false;
    std::mutex m_mutex; ///< over m_begun, m_added, m_isEnding and what a job that is begun holds
    std::condition_variable m_hasWork;
    std::condition_variable m_hasResult;
    std::vector<std::unique_ptr<Compressor>> m_compressors; ///< the caller's own first
    std::vector<std::jthread> m_threads; ///< last: gone before what they use
};

} // namespace corvane

#include "platform/pdf/compression_queue.h"

#include <qpdf/Buffer.hh>

#include <algorithm>
#include <system_error>

namespace corvane {

namespace {

constexpr size_t kJobsPerThread = 8;
constexpr size_t kKept = 262'144; ///< of a job's memory, for the next one in its place

int threadCount(int wanted)
{
    const int available = wanted < 1 ? int(std::thread::hardware_concurrency()) : wanted;
    return std::clamp(available, 1, CompressionQueue::kMostThreads);
}

} // namespace

CompressionQueue::CompressionQueue(int threads)
    : m_ring(size_t(threadCount(threads)) * kJobsPerThread)
{
    for (int i = 0; i < threadCount(threads); ++i)
        m_compressors.push_back(std::make_unique<Compressor>());
    try {
        for (size_t i = 1; i < m_compressors.size(); ++i)
            m_threads.emplace_back(
                [this, i] { serve(*m_compressors[i]); });
    } catch (const std::system_error &) {
        // Deliberate: the system has no more threads to give, and those that are there do the work.
    }
}

CompressionQueue::~CompressionQueue()
{
    {
        const std::scoped_lock lock(m_mutex);
        m_isEnding = true;
    }
    m_hasWork.notify_all();
}

void CompressionQueue::add(std::string_view bytes, Take take)
{
    while (m_added > m_taken
        && (m_added - m_taken == m_ring.size() || m_waiting + bytes.size() > kMostWaiting))
        takeOldest();
    Job &added = job(m_added);
    added.bytes.assign(bytes);
    added.take = std::move(take);
    added.isDone = false;
    m_waiting += bytes.size();
    {
        const std::scoped_lock lock(m_mutex);
        ++m_added;
    }
    m_hasWork.notify_one();
}

void CompressionQueue::finish()
{
    while (m_taken < m_added)
        takeOldest();
}

/// Whoever waits for a block compresses those that nobody has begun.
void CompressionQueue::takeOldest()
{
    Job &oldest = job(m_taken);
    {
        std::unique_lock lock(m_mutex);
        while (!oldest.isDone) {
            if (m_begun < m_added)
                work(lock, *m_compressors.front());
            else
                m_hasResult.wait(lock);
        }
    }
    ++m_taken;
    m_waiting -= oldest.bytes.size();
    if (oldest.bytes.capacity() > kKept)
        oldest.bytes = {};
    const Take take = std::move(oldest.take);
    if (oldest.failure)
        std::rethrow_exception(std::exchange(oldest.failure, nullptr));
    take(std::move(oldest.result));
}

/// Compresses the next job that nobody has begun. The lock is held before and after.
void CompressionQueue::work(std::unique_lock<std::mutex> &lock, Compressor &compressor)
{
    Job &begun = job(m_begun++);
    lock.unlock();
    try {
        begun.result = compressor.compress(begun.bytes);
    } catch (...) {
        begun.failure = std::current_exception();
    }
    lock.lock();
    begun.isDone = true;
    m_hasResult.notify_one();
}

/// Ends by a flag and not by a stop token: waiting for one needs a lock of its own within the condition, and with the
/// thread library of the Windows build two threads stood in each other's way there.
void CompressionQueue::serve(Compressor &compressor)
{
    std::unique_lock lock(m_mutex);
    while (!m_isEnding) {
        if (m_begun < m_added)
            work(lock, compressor);
        else
            m_hasWork.wait(lock);
    }
}

} // namespace corvane

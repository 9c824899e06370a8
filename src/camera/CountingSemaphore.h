#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>

namespace kestrin {

/// A semaphore that keeps every signal: the page may signal for hours while nobody waits, far beyond what
/// std::counting_semaphore holds. Thread: any.
class CountingSemaphore {
  public:
    explicit CountingSemaphore(std::uint64_t count) : m_count(count) {}

    void signal();
    void wait();
    /// Whether a signal was taken in time.
    bool waitFor(std::chrono::milliseconds limit);

  private:
    std::mutex m_mutex;
    std::condition_variable m_signalled;
    std::uint64_t m_count;
};

} // namespace kestrin

#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace kestrin::bench {

/// How long main takes to run what another thread posts to it, asked every few milliseconds while it lives.
/// Thread: main.
class AnswerTime {
  public:
    AnswerTime();
    ~AnswerTime();

    /// The milliseconds since the last call.
    std::vector<double> take();

  private:
    struct Samples {
        std::mutex mutex;
        std::vector<double> milliseconds; // guarded
    };

    const std::shared_ptr<Samples> m_samples = std::make_shared<Samples>();
    std::atomic<bool> m_ends = false;
    std::thread m_thread;
};

} // namespace kestrin::bench

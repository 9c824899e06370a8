#pragma once

#include <atomic>
#include <thread>
#include <vector>

namespace kestrin::bench {

/// Keeps every core awake while it lives, with threads that run only when nothing else wants to. A core that
/// slept takes a while to work again, so what happens rarely would seem slower than what happens often.
class AwakeCores {
  public:
    AwakeCores();
    ~AwakeCores();

  private:
    std::atomic<bool> m_ends = false;
    std::vector<std::thread> m_threads;
};

} // namespace kestrin::bench

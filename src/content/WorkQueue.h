#pragma once

#include "content/GPointer.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <stop_token>
#include <thread>

namespace kestrin::content {

/// Does long work on a thread of its own, one piece after another.
class WorkQueue {
  public:
    /// What follows a piece of work is called in `context`, which outlives the queue.
    /// Its end waits for the piece under way, which is told by its token; the others are dropped.
    explicit WorkQueue(GMainContext* context);

    /// False, and nothing happens, when too much waits already. Neither function throws. Thread: any.
    bool post(std::function<void(std::stop_token)> work, std::function<void()> then);

  private:
    struct Piece {
        std::function<void(std::stop_token)> work;
        std::function<void()> then;
    };

    void run(std::stop_token stop);

    GMainContext* const m_context;
    std::mutex m_mutex;
    std::condition_variable_any m_changed;
    std::deque<Piece> m_waiting;
    std::jthread m_thread;
};

} // namespace kestrin::content

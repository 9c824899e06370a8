#pragma once

#include "session/recording/VideoReader.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

namespace kestrin::session {

/// Decodes the pictures that will be asked for next, on a thread of its own. Thread: any one at a time.
class DecodeAhead {
  public:
    DecodeAhead(std::unique_ptr<VideoReader> video, int width, int height);
    ~DecodeAhead();
    DecodeAhead(const DecodeAhead&) = delete;
    DecodeAhead& operator=(const DecodeAhead&) = delete;

    /// Waits for the picture, of the video's size; false when it cannot be had.
    bool take(std::size_t index, Nv12Buffer& picture);

  private:
    struct Decoded {
        std::unique_ptr<Nv12Buffer> picture;
        bool isFilled = false;
    };
    void work();

    const std::unique_ptr<VideoReader> m_video; ///< touched by the thread only
    const std::size_t m_size;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Decoded> m_ready; ///< that of m_first, and those behind it
    std::vector<std::unique_ptr<Nv12Buffer>> m_free;
    std::size_t m_first = 0;
    unsigned m_jumps = 0;
    bool m_isStopping = false;
    std::thread m_thread;
};

} // namespace kestrin::session

#pragma once

#include "content/GPointer.h"

#include <chrono>
#include <functional>

namespace kestrin::content {

/// Calls a function from the main context that is the thread's default where the watch is made, again and
/// again until it is destroyed or assigned to; the function may do that itself.
class Watch {
  public:
    Watch() = default;
    ~Watch();
    Watch(Watch&&) = default;
    Watch& operator=(Watch&& other) noexcept;

    static Watch every(std::chrono::milliseconds period, std::function<void()> call);
    /// While the socket has something to read, or is at its end.
    static Watch readable(GSocket* socket, std::function<void()> call);

  private:
    GHandle<GSource, g_source_unref> m_source;
};

} // namespace kestrin::content

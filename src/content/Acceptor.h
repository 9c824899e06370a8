#pragma once

#include "content/GPointer.h"
#include "content/Watch.h"

#include <functional>

namespace kestrin::content {

/// Accepts the clients of a listening socket, in the main context that is the thread's default when it is
/// made, until it is destroyed. It goes on after failures: when the process has run out of file descriptors,
/// for one.
class Acceptor {
  public:
    using Arrived = std::function<void(GPointer<GSocket>)>;

    Acceptor(GPointer<GSocket> listening, Arrived arrived);

  private:
    void listen();
    void accept();

    const GPointer<GSocket> m_listening;
    const Arrived m_arrived;
    Watch m_watch;
};

} // namespace kestrin::content

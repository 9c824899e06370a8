#pragma once

#include "linux/network/IoThread.h"
#include "linux/reachability/RouteSocket.h"

#include <functional>

namespace kestrin::gtk {

/// Hears from the kernel when links, addresses, routes or rules change.
class NetworkChanges {
  public:
    /// A burst of changes, which is what any one event gives, is told once, this long after it began.
    static constexpr unsigned kFoldMilliseconds = 50;

    /// `changed` is called on the I/O thread. Thread: any, as for the end, which comes after that thread's.
    NetworkChanges(IoThread& io, std::function<void()> changed);
    ~NetworkChanges();
    NetworkChanges(const NetworkChanges&) = delete;
    NetworkChanges& operator=(const NetworkChanges&) = delete;

    /// Whether the kernel can be heard. Thread: any.
    bool canListen() const { return m_socket.isOpen(); }
    /// Thread: the I/O thread.
    void listen();

  private:
    void hear();

    IoThread& m_io;
    const std::function<void()> m_changed;
    RouteSocket m_socket;
    GSource* m_source = nullptr;
    bool m_isFolding = false;
};

} // namespace kestrin::gtk

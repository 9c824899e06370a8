#pragma once

#include <libmnl/libmnl.h>

#include <functional>
#include <memory>

namespace kestrin::gtk {

/// Calls `each` for what follows a message's header of that size.
void eachAttribute(const nlmsghdr& message, std::size_t header,
                   const std::function<void(const nlattr&)>& each);

/// A socket to what the kernel knows of links and routes. One thread at a time.
class RouteSocket {
  public:
    /// Hears of changes in those groups: one bit each, RTMGRP_LINK and so on.
    explicit RouteSocket(unsigned groups = 0);

    /// Not open when the system refuses.
    bool isOpen() const { return m_socket != nullptr; }
    int descriptor() const { return mnl_socket_get_fd(m_socket.get()); }

    /// Calls `each` for every message of the answer; false when the kernel refuses. The kernel answers inside
    /// the call: nothing waits.
    bool ask(nlmsghdr& request, const std::function<void(const nlmsghdr&)>& each);
    /// Forgets what has come; false when nothing had.
    bool drain();

  private:
    struct Close {
        void operator()(mnl_socket* socket) const { mnl_socket_close(socket); }
    };
    std::unique_ptr<mnl_socket, Close> m_socket;
};

} // namespace kestrin::gtk

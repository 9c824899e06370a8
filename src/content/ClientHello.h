#pragma once

#include <cstddef>

namespace kestrin::content {

/// Waits at a socket for a client's first TLS message without taking it out. A handshake once begun holds a
/// thread of GLib's pool, which the whole process shares, until the client answers; so none is begun for a
/// client that connects and then says nothing, or speaks something else.
class ClientHello {
  public:
    enum class State { Awaited, Complete, Refused };

    explicit ClientHello(int socket);

    /// To be asked whenever the socket is readable, which it is once there are enough bytes for the next
    /// step.
    State look();

  private:
    void await(std::size_t bytes);

    const int m_socket;
    std::size_t m_awaited = 0;
};

} // namespace kestrin::content

#pragma once

#include "content/GPointer.h"

#include <cstdint>
#include <string>

namespace kestrin::content {

/// A client that sends exactly the bytes it is given, or none. Blocking; gives up waiting after ten seconds.
class RawConnection {
  public:
    enum class Greeting { Tls, None };
    explicit RawConnection(std::uint16_t port, Greeting greeting = Greeting::Tls);
    ~RawConnection();
    RawConnection(const RawConnection&) = delete;
    RawConnection& operator=(const RawConnection&) = delete;

    /// False when the server has gone.
    bool send(const std::string& bytes);
    /// All bytes up to the end of the stream.
    std::string receiveAll();
    /// True when the server ends the connection within the wait; what it sends until then is dropped.
    bool isEnded();
    /// Breaks the connection off with a reset.
    void reset();

  private:
    GSocket* socket() const { return g_socket_connection_get_socket(m_connection.get()); }

    GPointer<GSocketConnection> m_connection;
    GPointer<GIOStream> m_stream;
};

} // namespace kestrin::content

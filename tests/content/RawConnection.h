#pragma once

#include <cstdint>
#include <gio/gio.h>
#include <string>

namespace kestrin::content {

/// A client that sends exactly the bytes it is given, or none. Blocking; gives up waiting after ten seconds.
class RawConnection {
  public:
    enum class Greeting { Tls, None };
    explicit RawConnection(std::uint16_t port, Greeting greeting = Greeting::Tls,
                           const char* address = "127.0.0.1");
    ~RawConnection();
    RawConnection(const RawConnection&) = delete;
    RawConnection& operator=(const RawConnection&) = delete;

    bool isUp() const { return m_stream != nullptr; }
    /// False when the server has gone.
    bool send(const std::string& bytes);
    /// At most `count` bytes, fewer at the end of the stream.
    std::string receive(std::size_t count);
    std::string receiveAll() { return receive(SIZE_MAX); }
    /// True when the server ends the connection within the wait; what it sends until then is dropped.
    bool isEnded();
    /// Breaks the connection off with a reset.
    void reset();
    /// Says that nothing more will be sent.
    void finishSending();
    GTlsCertificate* certificate() const;

  private:
    GSocketConnection* m_connection = nullptr;
    GIOStream* m_stream = nullptr;
};

/// What the server answers to one request, sent as it stands, on a connection of its own.
std::string exchange(std::uint16_t port, const std::string& request);

} // namespace kestrin::content

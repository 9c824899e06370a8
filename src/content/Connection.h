#pragma once

#include "content/ClientHello.h"
#include "content/GPointer.h"
#include "content/RequestHandler.h"
#include "content/ServerOptions.h"
#include "content/Watch.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <libsoup/soup.h>
#include <memory>
#include <string_view>

namespace kestrin::content {

/// What a server's connections have in common.
struct ConnectionSetup {
    const CurrentHandler& handler;
    GPointer<GTlsCertificate> certificate;
    Limits limits;
    std::function<void(std::string_view)> log;
    /// Encrypted streams that something still holds. Handshakes end on threads of GLib's, at times after
    /// their connection.
    std::shared_ptr<std::atomic<int>> streams = std::make_shared<std::atomic<int>>(0);
};

/// One client, from its arrival on. It has a SoupServer to itself: libsoup forgets to close a connection that
/// the client ends between two requests, and nothing but the end of its server lets go of it then. The
/// sockets' own limits are set here too, as libsoup has none. Lives on the server's thread.
class Connection : public std::enable_shared_from_this<Connection> {
  public:
    /// `setup` outlives the connection. The caller goes on with begin().
    Connection(GPointer<GSocket> socket, const ConnectionSetup& setup);
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    void begin();
    /// Ends a connection that has outstayed its time, or whose client has left. To be called now and then.
    void check();
    /// True when there is nothing more to do than to destroy it, which must not happen within a call of its
    /// own.
    bool isOver() const;

  private:
    using Clock = std::chrono::steady_clock;

    void awaitHello();
    void shakeHands();
    void handsShaken(bool isDone);
    void serve();
    void requestStarted(SoupServerMessage* message);
    void headReceived(SoupServerMessage* message);
    void requestFinished(SoupServerMessage* message);
    void bodyReceived(std::size_t bytes);
    void renewDeadline();
    /// What was written still reaches the client.
    void end();
    /// For a client that keeps to no rule: it is told at once, though it may not be listening.
    void reset();

    const ConnectionSetup& m_setup;
    const GPointer<GSocket> m_socket;
    ClientHello m_hello;
    Watch m_watch;
    GPointer<GIOStream> m_stream;
    GPointer<SoupServer> m_server;
    Clock::time_point m_deadline;
    std::size_t m_bodyBytes = 0, m_mostBodyBytes = 0;
    bool m_isBetweenRequests = false;
    bool m_isEnded = false;
};

} // namespace kestrin::content

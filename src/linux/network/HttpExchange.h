#pragma once

#include "linux/network/SoupSessions.h"
#include "platform/Log.h"
#include "platform/Network.h"

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace kestrin::gtk {

/// The largest body that is read.
inline constexpr std::size_t kLargestBody = 64U << 20U;

/// One request on its way, redirects included. Thread: the I/O thread.
class HttpExchange : public std::enable_shared_from_this<HttpExchange> {
  public:
    using Done = std::function<void(std::optional<platform::HttpResponse>)>;

    /// `delegate` and `log` may be null; else they live until `done` is called. `done` is called exactly
    /// once, possibly inside `start`.
    HttpExchange(SoupSessions& sessions, platform::HttpRequest request,
                 platform::AuthenticationDelegate* delegate, platform::LogSink* log, Done done);

    void start();
    /// Ends with none, soon.
    void cancel() { g_cancellable_cancel(m_cancellable.get()); }

  private:
    GRef<SoupMessage> makeMessage(GUri* uri);
    void watchHandshake();
    bool askAboutServer();
    void onAnswer(GAsyncResult* result);
    void read();
    void onRead(GAsyncResult* result);
    void onEnd();
    const char* redirectLocation() const;
    void redirect(std::string url);
    void fail(const GError* error);
    void trace(const std::string& outcome) const;
    void finish(std::optional<platform::HttpResponse> response);

    template <void (HttpExchange::*step)(GAsyncResult*)>
    static void resume(GObject*, GAsyncResult* result, gpointer self);
    gpointer keepAlive();

    SoupSessions& m_sessions;
    platform::HttpRequest m_request;
    platform::AuthenticationDelegate* m_delegate;
    platform::LogSink* m_log;
    Done m_done;
    GRef<GCancellable> m_cancellable = GRef<GCancellable>::adopt(g_cancellable_new());
    GRef<SoupSession> m_session;
    GRef<SoupMessage> m_message;
    GRef<GInputStream> m_stream;
    std::string m_host;
    std::array<char, 1U << 16U> m_chunk;
    std::string m_body;
    gint64 m_began = 0; ///< microseconds, of the request that is under way
    int m_redirects = 0;
    bool m_asked = false; ///< about the server, during the present handshake
};

} // namespace kestrin::gtk

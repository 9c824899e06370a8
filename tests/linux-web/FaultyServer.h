#pragma once

#include "linux/toolkit/GRef.h"

#include <gio/gio.h>

#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace kestrin::test {

/// A server on loopback that answers well or badly as it is told, over TLS with a certificate that nobody
/// trusts. Every connection has a thread. Thread: any.
class FaultyServer {
  public:
    struct Request {
        std::string method, path, host, type, body;
    };
    /// Some bytes of an answer, written `times` times, each after a pause.
    struct Piece {
        std::string bytes;
        double pause = 0; ///< seconds
        int times = 1;
    };
    struct Reply {
        std::vector<Piece> pieces;
        enum class Then { keepAlive, close, hang } then = Then::keepAlive;
    };
    using Handler = std::function<Reply(const Request&)>;

    FaultyServer();
    ~FaultyServer();

    /// A whole answer; `headers` are lines that end in CRLF.
    static Reply reply(const std::string& body, const std::string& status = "200 OK",
                       const std::string& headers = "Content-Type: text/html; charset=utf-8\r\n");
    void serve(const std::string& path, Handler handler);
    void serve(const std::string& path, Reply reply);
    void serve(const std::string& path, const std::string& html) { serve(path, reply(html)); }

    int port() const { return m_port; }
    std::string url(const std::string& path) const;
    /// How often the path was asked for.
    int requests(const std::string& path) const;

  private:
    void accept();
    void attend(const gtk::GRef<GSocketConnection>& connection);
    std::optional<Request> readRequest(GDataInputStream* input);
    Reply answer(const Request& request);
    bool write(GOutputStream* output, const Piece& piece);
    void wait(double seconds);

    const gtk::GRef<GCancellable> m_ending = gtk::GRef<GCancellable>::adopt(g_cancellable_new());
    gtk::GRef<GTlsCertificate> m_certificate;
    gtk::GRef<GSocket> m_socket;
    int m_port = 0;
    mutable std::mutex m_mutex;
    std::map<std::string, Handler> m_handlers; // guarded
    std::map<std::string, int> m_requests;     // guarded
    std::vector<std::thread> m_attendants;     ///< grown by the accepting thread only
    std::thread m_acceptor;
};

} // namespace kestrin::test

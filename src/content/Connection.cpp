#include "content/Connection.h"

#include <algorithm>
#include <array>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace kestrin::content {
namespace {

// libsoup closes a connection after each answer when its server listens nowhere, as here, where connections
// are brought to it. So it is given one end of a pair to listen at, whose other end is closed.
void keepOpen(SoupServer* server) {
    std::array<int, 2> pair;
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, pair.data()) != 0)
        return;
    close(pair[1]);
    if (const auto silent = GPointer<GSocket>::adopt(g_socket_new_from_fd(pair[0], nullptr)))
        soup_server_listen_socket(server, silent.get(), SoupServerListenOptions{}, nullptr);
    else
        close(pair[0]);
}

GPointer<GIOStream> encrypted(GSocket* socket, const ConnectionSetup& setup) {
    const auto plain =
        GPointer<GSocketConnection>::adopt(g_socket_connection_factory_create_connection(socket));
    // The absent data base is named, or every connection would read the system's trusted certificates: 8 ms,
    // 1 MB.
    auto stream = GPointer<GIOStream>::adopt(static_cast<GIOStream*>(
        g_initable_new(g_tls_backend_get_server_connection_type(g_tls_backend_get_default()), nullptr,
                       nullptr, "base-io-stream", plain.get(), "certificate", setup.certificate.get(),
                       "database", nullptr, "require-close-notify", FALSE, nullptr)));
    if (!stream)
        return stream;

    using Count = std::shared_ptr<std::atomic<int>>;
    ++*setup.streams;
    g_object_weak_ref(
        G_OBJECT(stream.get()),
        +[](gpointer count, GObject*) { --**std::unique_ptr<Count>(static_cast<Count*>(count)); },
        new Count(setup.streams));
    return stream;
}

// "GET /template/index.html?a=b 200": the address as it came, escapes included, fit for a terminal.
std::string lineAbout(SoupServerMessage* message) {
    GUri* const uri = soup_server_message_get_uri(message);
    const char* const query = g_uri_get_query(uri);
    std::string line = std::string(soup_server_message_get_method(message)) + " " + g_uri_get_path(uri) +
                       (query ? std::string("?") + query : "") + " " +
                       std::to_string(soup_server_message_get_status(message));
    std::replace_if(
        line.begin(), line.end(), [](char c) { return !g_ascii_isprint(c); }, '?');
    return line;
}

} // namespace

Connection::Connection(GPointer<GSocket> socket, const ConnectionSetup& setup)
    : m_setup(setup), m_socket(std::move(socket)), m_hello(g_socket_get_fd(m_socket.get())) {
    g_socket_set_option(m_socket.get(), IPPROTO_TCP, TCP_NODELAY, 1, nullptr);
    // libsoup and GLib say goodbye to a client in a blocking write; this bounds it.
    g_socket_set_timeout(m_socket.get(), static_cast<guint>(setup.limits.patience.count() / 1000 + 1));
}

void Connection::begin() {
    renewDeadline();
    m_watch = Watch::readable(m_socket.get(), [this] { awaitHello(); }); // which goes with the connection
}

Connection::~Connection() {
    if (!isOver())
        reset(); // so that no goodbye has to be said below
    if (!m_server)
        return;
    g_signal_handlers_disconnect_by_data(m_server.get(), this);
    soup_server_disconnect(m_server.get());
}

void Connection::awaitHello() {
    const ClientHello::State state = m_hello.look();
    if (state == ClientHello::State::Complete)
        shakeHands();
    else if (state == ClientHello::State::Refused)
        end();
}

// Asked for here and not left to the first read: a handshake begun by a read never lets go of its stream when
// the stream is closed before it is over.
void Connection::shakeHands() {
    m_watch = Watch();
    m_stream = encrypted(m_socket.get(), m_setup);
    if (!m_stream) {
        end();
        return;
    }
    using Self = std::weak_ptr<Connection>;
    g_tls_connection_handshake_async(
        G_TLS_CONNECTION(m_stream.get()), G_PRIORITY_DEFAULT, nullptr,
        +[](GObject* stream, GAsyncResult* result, gpointer data) {
            const std::unique_ptr<Self> self(static_cast<Self*>(data));
            const bool isDone = g_tls_connection_handshake_finish(G_TLS_CONNECTION(stream), result, nullptr);
            if (const auto connection = self->lock())
                connection->handsShaken(isDone);
        },
        new Self(weak_from_this()));
}

void Connection::handsShaken(bool isDone) {
    if (isDone && !m_isEnded)
        serve();
    else
        end();
}

void Connection::serve() {
    const auto local = GPointer<GSocketAddress>::adopt(g_socket_get_local_address(m_socket.get(), nullptr));
    const auto remote = GPointer<GSocketAddress>::adopt(g_socket_get_remote_address(m_socket.get(), nullptr));
    if (!local || !remote) { // the client has gone in the meantime
        end();
        return;
    }
    m_server = GPointer<SoupServer>::adopt(soup_server_new("raw-paths", TRUE, nullptr));
    keepOpen(m_server.get());
    soup_server_add_handler(
        m_server.get(), nullptr,
        +[](SoupServer*, SoupServerMessage* message, const char*, GHashTable*, gpointer data) {
            auto* const self = static_cast<Connection*>(data);
            self->m_setup.handler.get()->answer(message, [self] { self->reset(); });
        },
        this, nullptr);
    g_signal_connect(m_server.get(), "request-started",
                     G_CALLBACK(+[](SoupServer*, SoupServerMessage* message, gpointer self) {
                         static_cast<Connection*>(self)->requestStarted(message);
                     }),
                     this);
    g_signal_connect(m_server.get(), "request-finished",
                     G_CALLBACK(+[](SoupServer*, SoupServerMessage* message, gpointer self) {
                         static_cast<Connection*>(self)->requestFinished(message);
                     }),
                     this);
    soup_server_accept_iostream(m_server.get(), m_stream.get(), local.get(), remote.get(), nullptr);
}

void Connection::requestStarted(SoupServerMessage* message) {
    renewDeadline();
    m_isBetweenRequests = false;
    m_bodyBytes = 0;
    m_mostBodyBytes = m_setup.limits.bodyBytes;
    soup_message_body_set_accumulate(soup_server_message_get_request_body(message), FALSE);
    g_signal_connect(message, "got-headers", G_CALLBACK(+[](SoupServerMessage* received, gpointer self) {
                         static_cast<Connection*>(self)->headReceived(received);
                     }),
                     this);
    g_signal_connect(message, "got-chunk", G_CALLBACK(+[](SoupServerMessage*, GBytes* chunk, gpointer self) {
                         static_cast<Connection*>(self)->bodyReceived(g_bytes_get_size(chunk));
                     }),
                     this);
    g_signal_connect(message, "wrote-body-data", G_CALLBACK(+[](SoupServerMessage*, guint, gpointer self) {
                         static_cast<Connection*>(self)->renewDeadline();
                     }),
                     this);
}

void Connection::headReceived(SoupServerMessage* message) {
    if (!m_setup.handler.get()->readsBody(message))
        return;
    m_mostBodyBytes = m_setup.limits.pictureBytes;
    soup_message_body_set_accumulate(soup_server_message_get_request_body(message), TRUE);
    // From here on it is the client that waits.
    g_signal_connect(message, "got-body", G_CALLBACK(+[](SoupServerMessage*, gpointer self) {
                         static_cast<Connection*>(self)->renewDeadline();
                     }),
                     this);
}

void Connection::requestFinished(SoupServerMessage* message) {
    renewDeadline();
    m_isBetweenRequests = true;
    if (m_setup.log)
        m_setup.log(lineAbout(message));
}

void Connection::bodyReceived(std::size_t bytes) {
    m_bodyBytes += bytes;
    if (m_bodyBytes > m_mostBodyBytes)
        reset();
}

void Connection::renewDeadline() { m_deadline = Clock::now() + m_setup.limits.patience; }

void Connection::check() {
    if (isOver())
        return;
    char next;
    if (m_isBetweenRequests && recv(g_socket_get_fd(m_socket.get()), &next, 1, MSG_PEEK | MSG_DONTWAIT) == 0)
        end();
    else if (Clock::now() > m_deadline)
        reset();
}

// Whoever reads or writes the socket, libsoup or a handshake on a thread of its own, meets the end of the
// stream.
void Connection::end() {
    m_isEnded = true;
    m_watch = Watch();
    g_socket_shutdown(m_socket.get(), TRUE, TRUE, nullptr); // fails on a closed one, which is as well
}

// Without a reset a client that writes against a full buffer would not learn of the end for a minute.
void Connection::reset() {
    const linger none{1, 0};
    setsockopt(g_socket_get_fd(m_socket.get()), SOL_SOCKET, SO_LINGER, &none, sizeof none);
    end();
}

bool Connection::isOver() const { return m_isEnded || (m_stream && g_io_stream_is_closed(m_stream.get())); }

} // namespace kestrin::content

#include "RawConnection.h"

#include <cerrno>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <vector>

namespace kestrin::content {

RawConnection::RawConnection(std::uint16_t port, Greeting greeting) {
    const auto client = GPointer<GSocketClient>::adopt(g_socket_client_new());
    g_socket_client_set_timeout(client.get(), 10);
    g_socket_client_set_enable_proxy(client.get(), FALSE);
    m_connection = GPointer<GSocketConnection>::adopt(
        g_socket_client_connect_to_host(client.get(), "127.0.0.1", port, nullptr, nullptr));
    if (!m_connection)
        return;
    g_socket_set_option(socket(), IPPROTO_TCP, TCP_NODELAY, 1, nullptr);
    m_stream = GPointer<GIOStream>::share(G_IO_STREAM(m_connection.get()));
    if (greeting == Greeting::None)
        return;
    m_stream = GPointer<GIOStream>::adopt(g_tls_client_connection_new(m_stream.get(), nullptr, nullptr));
    g_signal_connect(m_stream.get(), "accept-certificate", G_CALLBACK(+[] { return TRUE; }), nullptr);
    auto* const tls = G_TLS_CONNECTION(m_stream.get());
    g_tls_connection_set_require_close_notify(tls, FALSE);
    if (!g_tls_connection_handshake(tls, nullptr, nullptr))
        m_stream.reset();
}

RawConnection::~RawConnection() {
    if (m_connection)
        g_socket_shutdown(socket(), TRUE, TRUE, nullptr);
}

bool RawConnection::send(const std::string& bytes) {
    return m_stream && g_output_stream_write_all(g_io_stream_get_output_stream(m_stream.get()), bytes.data(),
                                                 bytes.size(), nullptr, nullptr, nullptr);
}

std::string RawConnection::receiveAll() {
    std::string all;
    std::vector<char> piece(64 * 1024);
    gssize got = 0;
    while (m_stream && (got = g_input_stream_read(g_io_stream_get_input_stream(m_stream.get()), piece.data(),
                                                  piece.size(), nullptr, nullptr)) > 0)
        all.append(piece.data(), static_cast<std::size_t>(got));
    return all;
}

bool RawConnection::isEnded() {
    if (!m_stream)
        return true;
    const gint64 until = g_get_monotonic_time() + 10 * G_USEC_PER_SEC;
    char piece[4096];
    while (g_get_monotonic_time() < until) {
        const ssize_t got = recv(g_socket_get_fd(socket()), piece, sizeof piece, MSG_DONTWAIT);
        if (got == 0 || (got < 0 && errno != EAGAIN))
            return true;
        if (got < 0)
            g_usleep(5000);
    }
    return false;
}

void RawConnection::reset() {
    const linger now{1, 0};
    setsockopt(g_socket_get_fd(socket()), SOL_SOCKET, SO_LINGER, &now, sizeof now);
    g_socket_close(socket(), nullptr);
}

} // namespace kestrin::content

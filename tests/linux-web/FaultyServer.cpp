#include "FaultyServer.h"

#include "content/Certificate.h"

#include <chrono>
#include <stdexcept>
#include <utility>

namespace kestrin::test {

using gtk::GRef;

FaultyServer::FaultyServer() {
    auto certificate = content::makeCertificate({"localhost", "127.0.0.1", "mapped.test"});
    m_certificate = GRef<GTlsCertificate>::ref(certificate.get());
    m_socket = GRef<GSocket>::adopt(
        g_socket_new(G_SOCKET_FAMILY_IPV4, G_SOCKET_TYPE_STREAM, G_SOCKET_PROTOCOL_TCP, nullptr));
    const auto any = GRef<GSocketAddress>::adopt(g_inet_socket_address_new_from_string("127.0.0.1", 0));
    if (!g_socket_bind(m_socket.get(), any.get(), true, nullptr) || !g_socket_listen(m_socket.get(), nullptr))
        throw std::runtime_error("the test server cannot listen");
    const auto bound = GRef<GSocketAddress>::adopt(g_socket_get_local_address(m_socket.get(), nullptr));
    m_port = g_inet_socket_address_get_port(G_INET_SOCKET_ADDRESS(bound.get()));
    m_acceptor = std::thread([this] { accept(); });
}

FaultyServer::~FaultyServer() {
    g_cancellable_cancel(m_ending.get());
    m_acceptor.join();
    for (std::thread& attendant : m_attendants)
        attendant.join();
}

FaultyServer::Reply FaultyServer::reply(const std::string& body, const std::string& status,
                                        const std::string& headers) {
    return {{{"HTTP/1.1 " + status + "\r\n" + headers + "Content-Length: " + std::to_string(body.size()) +
              "\r\n\r\n" + body}}};
}

void FaultyServer::serve(const std::string& path, Handler handler) {
    const std::lock_guard lock(m_mutex);
    m_handlers[path] = std::move(handler);
}

void FaultyServer::serve(const std::string& path, Reply reply) {
    serve(path, [reply = std::move(reply)](const Request&) { return reply; });
}

std::string FaultyServer::url(const std::string& path) const {
    return "https://127.0.0.1:" + std::to_string(m_port) + path;
}

int FaultyServer::requests(const std::string& path) const {
    const std::lock_guard lock(m_mutex);
    const auto found = m_requests.find(path);
    return found == m_requests.end() ? 0 : found->second;
}

void FaultyServer::accept() {
    while (GSocket* accepted = g_socket_accept(m_socket.get(), m_ending.get(), nullptr)) {
        const auto socket = GRef<GSocket>::adopt(accepted);
        auto connection =
            GRef<GSocketConnection>::adopt(g_socket_connection_factory_create_connection(socket.get()));
        m_attendants.emplace_back([this, connection = std::move(connection)] { attend(connection); });
    }
}

void FaultyServer::attend(const GRef<GSocketConnection>& connection) {
    const auto stream = GRef<GIOStream>::adopt(
        g_tls_server_connection_new(G_IO_STREAM(connection.get()), m_certificate.get(), nullptr));
    const auto input =
        GRef<GDataInputStream>::adopt(g_data_input_stream_new(g_io_stream_get_input_stream(stream.get())));
    g_data_input_stream_set_newline_type(input.get(), G_DATA_STREAM_NEWLINE_TYPE_CR_LF);
    auto then = Reply::Then::keepAlive;
    while (then == Reply::Then::keepAlive) {
        const auto request = readRequest(input.get());
        if (!request)
            break;
        const Reply reply = answer(*request);
        then = reply.then;
        for (const Piece& piece : reply.pieces)
            if (!write(g_io_stream_get_output_stream(stream.get()), piece))
                return;
    }
    if (then == Reply::Then::hang)
        wait(1e6);
    g_io_stream_close(stream.get(), nullptr, nullptr);
}

std::optional<FaultyServer::Request> FaultyServer::readRequest(GDataInputStream* input) {
    const auto readLine = [&] {
        const gtk::GText line(g_data_input_stream_read_line(input, nullptr, m_ending.get(), nullptr));
        return std::string(line ? line.get() : "");
    };
    const std::string first = readLine();
    const auto space = first.find(' '), end = first.rfind(' ');
    if (space == first.npos || end == space)
        return std::nullopt;
    Request request{first.substr(0, space), first.substr(space + 1, end - space - 1), "", "", ""};
    for (std::string line = readLine(); !line.empty(); line = readLine()) {
        if (line.starts_with("Host: "))
            request.host = line.substr(6);
        if (line.starts_with("Content-Type: "))
            request.type = line.substr(14);
        if (line.starts_with("Content-Length: "))
            request.body.resize(std::stoul(line.substr(16)));
    }
    const bool whole = g_input_stream_read_all(G_INPUT_STREAM(input), request.body.data(),
                                               request.body.size(), nullptr, m_ending.get(), nullptr);
    return whole ? std::optional(request) : std::nullopt;
}

FaultyServer::Reply FaultyServer::answer(const Request& request) {
    const std::lock_guard lock(m_mutex);
    ++m_requests[request.path];
    const auto found = m_handlers.find(request.path);
    return found == m_handlers.end() ? reply("", "404 Not Found") : found->second(request);
}

bool FaultyServer::write(GOutputStream* output, const Piece& piece) {
    for (int i = 0; i < piece.times; ++i) {
        wait(piece.pause);
        if (!g_output_stream_write_all(output, piece.bytes.data(), piece.bytes.size(), nullptr,
                                       m_ending.get(), nullptr))
            return false;
    }
    return true;
}

void FaultyServer::wait(double seconds) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
    while (std::chrono::steady_clock::now() < end && !g_cancellable_is_cancelled(m_ending.get()))
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
}

} // namespace kestrin::test

#include "content/Acceptor.h"

#include <utility>

namespace kestrin::content {

Acceptor::Acceptor(GPointer<GSocket> listening, Arrived arrived)
    : m_listening(std::move(listening)), m_arrived(std::move(arrived)) {
    g_socket_set_blocking(m_listening.get(), FALSE);
    listen();
}

void Acceptor::listen() {
    m_watch = Watch::readable(m_listening.get(), [this] { accept(); });
}

void Acceptor::accept() {
    GFailure failure;
    auto socket = GPointer<GSocket>::adopt(g_socket_accept(m_listening.get(), nullptr, failure.out()));
    if (socket)
        m_arrived(std::move(socket));
    else if (!failure.is(G_IO_ERROR_WOULD_BLOCK)) // the client still waits: without a pause this would spin
        m_watch = Watch::every(std::chrono::milliseconds(100), [this] { listen(); });
}

} // namespace kestrin::content

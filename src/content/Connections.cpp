#include "content/Connections.h"

#include <algorithm>
#include <thread>
#include <utility>

namespace kestrin::content {
namespace {

using namespace std::chrono_literals;

std::chrono::milliseconds sweepPeriod(std::chrono::milliseconds patience) {
    return std::clamp<std::chrono::milliseconds>(patience / 4, 10ms, 1s);
}

} // namespace

Connections::Connections(ConnectionSetup setup)
    : m_setup(std::move(setup)),
      m_sweep(Watch::every(sweepPeriod(m_setup.limits.patience), [this] { sweep(); })) {}

Connections::~Connections() {
    m_connections.clear();
    // Handshakes say through this context that they have ended. They have, with their sockets shut; the bound
    // is for a thread that does not get to run.
    for (int wait = 0; *m_setup.streams > 0 && wait < 2000; ++wait) {
        g_main_context_iteration(g_main_context_get_thread_default(), FALSE);
        std::this_thread::sleep_for(1ms);
    }
}

void Connections::admit(GPointer<GSocket> socket) {
    if (m_connections.size() >= m_setup.limits.connections)
        sweep();
    if (m_connections.size() < m_setup.limits.connections)
        m_connections.emplace_back(std::make_shared<Connection>(std::move(socket), m_setup))->begin();
}

void Connections::sweep() {
    for (const auto& connection : m_connections)
        connection->check();
    m_connections.remove_if([](const auto& connection) { return connection->isOver(); });
}

} // namespace kestrin::content

#pragma once

#include "content/Connection.h"

#include <list>

namespace kestrin::content {

/// The clients that a server has at one time. Lives on the server's thread.
class Connections {
  public:
    explicit Connections(ConnectionSetup setup);
    /// Ends all connections, and waits until the threads that shake hands for them have let go.
    ~Connections();
    Connections(const Connections&) = delete;
    Connections& operator=(const Connections&) = delete;

    /// Takes a client in, unless there are too many.
    void admit(GPointer<GSocket> socket);

  private:
    void sweep();

    const ConnectionSetup m_setup;
    std::list<std::shared_ptr<Connection>> m_connections;
    Watch m_sweep;
};

} // namespace kestrin::content

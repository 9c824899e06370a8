#pragma once

#include "content/GPointer.h"

#include <cstdint>
#include <string>

namespace kestrin::content {

/// A socket that listens on an IP address; port 0 takes any free one. Throws std::runtime_error.
GPointer<GSocket> listenOn(const std::string& address, std::uint16_t port);

/// Where this machine reaches a listening socket.
struct Endpoint {
    /// In brackets when it is an IPv6 address; the loopback address when the socket listens on every address.
    std::string address;
    std::uint16_t port = 0;
};
Endpoint endpointOf(GSocket* listening);

} // namespace kestrin::content

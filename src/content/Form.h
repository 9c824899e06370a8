#pragma once

namespace kestrin::content {

/// How a client comes to the server's address.
enum class Form {
    /// By address and port: "https://127.0.0.1:41234". Anything can load such a URL as it stands.
    Direct,
    /// By the application's host name, without a port: "https://content.kestrin.test". Only for a client that
    /// sends this name to the server's endpoint, as one with a host map does.
    Mapped,
};

} // namespace kestrin::content

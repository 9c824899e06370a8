#pragma once

#include "content/PictureLookup.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace kestrin::content {

/// What one server spends on its clients.
struct Limits {
    /// A further connection is ended as soon as it is made.
    std::size_t connections = 128;
    /// Only look-ups read a body. A longer one, of a look-up or of any other request, ends its connection.
    std::size_t pictureBytes = 8 * 1024 * 1024;
    std::size_t bodyBytes = 64 * 1024;
    /// A client that takes longer to shake hands and send its request, or that takes no byte of its answer
    /// for this long, is let go. So is a connection that is kept open without a request.
    std::chrono::milliseconds patience{30000};
};

struct ServerOptions {
    /// The IP address to listen on. Other machines reach the server only when this is not a loopback address.
    /// IPv4 serves every client; one built on GnuTLS, as libsoup and WebKitGTK are, sends an IPv6 address in
    /// a URL as a server name too, and GnuTLS as a server refuses that.
    std::string address = "127.0.0.1";
    /// 0 takes any free port.
    std::uint16_t port = 0;
    /// Further host names and addresses for the certificate, beside the application's, "localhost" and
    /// `address`.
    std::vector<std::string> hostNames;
    Limits limits;
    /// Recognises pictures; when null, look-ups are not served.
    std::shared_ptr<PictureLookup> lookup;
    /// How often an application folder is looked at for changes.
    std::chrono::milliseconds reloadPeriod{1000};
    /// Hears in a line each of every request that was answered and every change of an application folder, on
    /// the server's thread. May be empty.
    std::function<void(std::string_view line)> log;
};

} // namespace kestrin::content

#pragma once

#include "platform/Dispatch.h"

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <variant>

namespace kestrin::platform {

/// Answers the question whether a server is to be trusted.
class AuthenticationDelegate {
  public:
    virtual ~AuthenticationDelegate() = default;
    /// Whether to go on with the certificate that `host` showed, unchecked; false leaves it to the system's
    /// check. Thread: main or worker.
    virtual bool acceptServerTrust(const std::string& host) = 0;
};

struct HttpRequest {
    std::string url;
    std::string method = "GET";
    std::map<std::string, std::string> headers;
    std::string body;
};

struct HttpResponse {
    int status = 0;
    std::string body;
};

/// HTTP(S) requests. A transport error, an address that cannot be requested or a body over 64 MB gives none.
class HttpClient {
  public:
    /// Called on main.
    using Completion = std::function<void(std::optional<HttpResponse>)>;

    virtual ~HttpClient() = default;
    /// `delegate` lives until the completion is called; it may be null, then certificates are checked.
    /// Thread: any.
    virtual void send(const HttpRequest& request, AuthenticationDelegate* delegate, Completion done) = 0;
    /// Blocks. Thread: worker; any for a `data:` address, which holds its own answer.
    virtual std::optional<HttpResponse> fetch(const HttpRequest& request,
                                              AuthenticationDelegate* delegate) = 0;
};

/// How the way to a target is, in bits; 0 when there is no way.
using ReachabilityFlags = std::uint32_t;
inline constexpr ReachabilityFlags kTransientConnection = 0x1;
inline constexpr ReachabilityFlags kReachable = 0x2;
inline constexpr ReachabilityFlags kConnectionRequired = 0x4;
inline constexpr ReachabilityFlags kConnectionOnTraffic = 0x8;
inline constexpr ReachabilityFlags kInterventionRequired = 0x10;
inline constexpr ReachabilityFlags kConnectionOnDemand = 0x20;
inline constexpr ReachabilityFlags kIsLocalAddress = 0x10000;
inline constexpr ReachabilityFlags kIsDirect = 0x20000; ///< no gateway on the way
inline constexpr ReachabilityFlags kIsCellular = 0x40000;

using Ipv4Address = std::array<std::uint8_t, 4>; ///< as written: 127.0.0.1 begins with 127
using Ipv6Address = std::array<std::uint8_t, 16>;
using IpAddress = std::variant<Ipv4Address, Ipv6Address>;

/// 0.0.0.0, which stands for the internet in general, by either protocol.
inline constexpr Ipv4Address kInternet{0, 0, 0, 0};
/// 169.254.0.0, which stands for a wireless network that the device itself has joined.
inline constexpr Ipv4Address kLocalWiFi{169, 254, 0, 0};

/// Something on the network that can be reached or not, as far as the device knows its own links and routes:
/// nothing is sent to it. Thread: any.
class ReachabilityTarget {
  public:
    using Changed = std::function<void(ReachabilityFlags flags)>;

    /// Stops.
    virtual ~ReachabilityTarget() = default;
    /// None when they cannot be read. Never waits: a name that is not resolved yet counts as the internet in
    /// general, and one that could not be resolved as unreachable.
    virtual std::optional<ReachabilityFlags> flags() = 0;
    /// Calls `changed` on the queue, which lives until `stop`, once with the present flags as soon as they
    /// are known, and then whenever they are others. False when that cannot be had.
    virtual bool start(SerialQueue& queue, Changed changed) = 0;
    /// Nothing is posted afterwards; what was posted before may still run.
    virtual void stop() = 0;
};

/// Makes targets, which may outlive it. Null when it refuses. Thread: any.
class ReachabilityTargets {
  public:
    virtual ~ReachabilityTargets() = default;
    virtual std::unique_ptr<ReachabilityTarget> makeForHost(const std::string& host) = 0;
    virtual std::unique_ptr<ReachabilityTarget> makeForAddress(const IpAddress& address) = 0;
};

} // namespace kestrin::platform

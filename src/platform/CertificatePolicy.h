#pragma once

#include <atomic>

namespace kestrin::platform {

enum class CertificatePolicy {
    acceptAll, ///< every server certificate is good
    strict     ///< only certificates that pass the system's check
};

/// How HTTPS servers are trusted, by requests and web views alike. Set before the first connection, by the
/// host or, when the person asks for it, by the platform. Thread: any.
inline std::atomic<CertificatePolicy> certificatePolicy{CertificatePolicy::acceptAll};

inline bool acceptsEveryServer() { return certificatePolicy == CertificatePolicy::acceptAll; }

} // namespace kestrin::platform

#pragma once

#include <atomic>

namespace kestrin {

enum class CertificatePolicy {
    acceptAll, ///< every server certificate is good
    strict     ///< only certificates that pass the system's check
};

/// How HTTPS servers are trusted, by requests and web views alike. Set before the first connection.
/// Thread: any.
inline std::atomic<CertificatePolicy> certificatePolicy{CertificatePolicy::acceptAll};

} // namespace kestrin

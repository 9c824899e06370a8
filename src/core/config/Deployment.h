#pragma once

#include "platform/CertificatePolicy.h"

namespace kestrin {

using platform::CertificatePolicy;

/// What the maker of a product settles once.
struct Deployment {
    /// The maker's public web site, and its bare domain, which leads there.
    static constexpr const char* kWebHost = "www.kestrin.example";
    static constexpr const char* kWebDomain = "kestrin.example";
    /// The default server.
    static constexpr const char* kApplicationHost = "apps.kestrin.example";
    /// A host that is always there: what can be reached from it is the internet.
    static constexpr const char* kPublicHost = "example.com";
    /// Named to the person who meets a broken build.
    static constexpr const char* kSupportContact = "support@kestrin.example";
    /// The application that the built-in local key string opens.
    static constexpr const char* kLocalApplicationId = "7d0c4a52-3be1-4f68-9a57-c2e81f60d934";
    /// Set it to strict for a product whose servers carry certificates that the system trusts.
    static constexpr auto& certificates = platform::certificatePolicy;
};

} // namespace kestrin

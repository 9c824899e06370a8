#include "services/util/UploadTrust.h"

#include "services/util/CertificatePolicy.h"
#include "services/util/Url.h"

namespace kestrin {

namespace {

/// A numeric address stands in brackets in an address only.
std::string bareHost(std::string_view host) {
    return std::string(host.starts_with('[') ? host.substr(1, host.size() - 2) : host);
}

} // namespace

UploadTrust::UploadTrust(const std::string& url) : m_host(bareHost(urlHost(url).value_or(""))) {}

bool UploadTrust::acceptServerTrust(const std::string& host) {
    return certificatePolicy == CertificatePolicy::acceptAll && host == m_host;
}

} // namespace kestrin

#include "services/util/UploadTrust.h"

#include "platform/CertificatePolicy.h"
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
    return platform::acceptsEveryServer() && host == m_host;
}

} // namespace kestrin

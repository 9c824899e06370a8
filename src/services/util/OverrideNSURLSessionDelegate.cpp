#include "services/util/OverrideNSURLSessionDelegate.h"

#include "platform/CertificatePolicy.h"
#include "services/util/Format.h"
#include "services/util/Singleton.h"

namespace kestrin {

std::shared_ptr<OverrideNSURLSessionDelegate> OverrideNSURLSessionDelegate::getInstance() {
    return singleton<OverrideNSURLSessionDelegate>();
}

bool OverrideNSURLSessionDelegate::acceptServerTrust(const std::string&) {
    const bool accepts = platform::acceptsEveryServer();
    log("NSURLSession -> Completed HTTPS Challenge");
    return accepts;
}

} // namespace kestrin

#pragma once

#include "platform/Network.h"

#include <memory>

namespace kestrin {

/// Answers for every HTTPS request whether its server is trusted: always, unless the deployment is strict.
/// Thread: any.
class OverrideNSURLSessionDelegate : public platform::AuthenticationDelegate {
  public:
    static std::shared_ptr<OverrideNSURLSessionDelegate> getInstance();

    bool acceptServerTrust(const std::string& host) override;
};

} // namespace kestrin

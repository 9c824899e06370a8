#pragma once

#include "platform/Network.h"

namespace kestrin {

/// Trusts the server of one upload: always that of the upload's own address, no other that it leads to, and
/// none unchecked when the deployment is strict. Thread: any.
class UploadTrust : public platform::AuthenticationDelegate {
  public:
    explicit UploadTrust(const std::string& url);

    bool acceptServerTrust(const std::string& host) override;

  private:
    const std::string m_host;
};

} // namespace kestrin

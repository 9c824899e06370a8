#pragma once

#include "platform/Network.h"

#include <mutex>
#include <string>
#include <vector>

namespace kestrin::test {

/// Answers the trust question one way and keeps what it was asked. Thread: any.
class TrustAnswer : public platform::AuthenticationDelegate {
  public:
    explicit TrustAnswer(bool accepts) : m_accepts(accepts) {}
    bool acceptServerTrust(const std::string& host) override {
        const std::lock_guard lock(m_mutex);
        m_asked.push_back(host);
        return m_accepts;
    }
    std::vector<std::string> asked() const {
        const std::lock_guard lock(m_mutex);
        return m_asked;
    }

  private:
    const bool m_accepts;
    mutable std::mutex m_mutex;
    std::vector<std::string> m_asked;
};

} // namespace kestrin::test

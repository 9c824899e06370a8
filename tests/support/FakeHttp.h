#pragma once

#include "platform/Dispatch.h"
#include "platform/Network.h"

#include <atomic>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace kestrin::test {

/// A server made of answers by address; an address without an answer is a transport error. Over https it is
/// only heard when the delegate accepts its certificate or, if the test says so, the system does.
/// Thread: any.
class FakeHttp : public platform::HttpClient {
  public:
    explicit FakeHttp(platform::Dispatch& dispatch) : m_dispatch(dispatch) {}

    void send(const platform::HttpRequest& request, platform::AuthenticationDelegate* delegate,
              Completion done) override;
    std::optional<platform::HttpResponse> fetch(const platform::HttpRequest& request,
                                                platform::AuthenticationDelegate* delegate) override;

    void answer(const std::string& url, const std::string& body, int status = 200);
    /// The requests so far, in order.
    std::vector<platform::HttpRequest> requests() const;

    std::atomic<bool> hasTrustedCertificate = false;

  private:
    std::optional<platform::HttpResponse> find(const std::string& url,
                                               platform::AuthenticationDelegate* delegate) const;

    platform::Dispatch& m_dispatch;
    mutable std::mutex m_mutex;
    std::map<std::string, platform::HttpResponse> m_answers;
    std::vector<platform::HttpRequest> m_requests;
};

} // namespace kestrin::test

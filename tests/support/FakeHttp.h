#pragma once

#include "platform/Dispatch.h"
#include "platform/Network.h"

#include <atomic>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kestrin::test {

/// A server made of answers by address; an address without an answer is a transport error. Over https it is
/// only heard when the delegate accepts its certificate or, if the test says so, the system does.
/// Thread: any.
class FakeHttp : public platform::HttpClient {
  public:
    explicit FakeHttp(platform::Dispatch& dispatch) : m_dispatch(dispatch) {}

    void send(const platform::HttpRequest& request, platform::AuthenticationDelegate* delegate,
              Completion done) override {
        note(request);
        m_dispatch.mainAsync(
            [this, url = request.url, delegate, done = std::move(done)] { done(find(url, delegate)); });
    }
    std::optional<platform::HttpResponse> fetch(const platform::HttpRequest& request,
                                                platform::AuthenticationDelegate* delegate) override {
        note(request);
        return find(request.url, delegate);
    }

    void answer(const std::string& url, const std::string& body, int status = 200) {
        const std::lock_guard lock(m_mutex);
        m_answers[url] = {status, body};
    }
    /// The requests so far, in order.
    std::vector<platform::HttpRequest> requests() const {
        const std::lock_guard lock(m_mutex);
        return m_requests;
    }

    std::atomic<bool> hasTrustedCertificate = false;

  private:
    void note(const platform::HttpRequest& request) {
        const std::lock_guard lock(m_mutex);
        m_requests.push_back(request);
    }
    std::optional<platform::HttpResponse> find(const std::string& url,
                                               platform::AuthenticationDelegate* delegate) const {
        constexpr std::string_view kSecure = "https://";
        if (url.starts_with(kSecure)) {
            const auto host = url.substr(kSecure.size(), url.find('/', kSecure.size()) - kSecure.size());
            const bool accepted = delegate && delegate->acceptServerTrust(host);
            if (!accepted && !hasTrustedCertificate)
                return std::nullopt;
        }
        const std::lock_guard lock(m_mutex);
        const auto found = m_answers.find(url);
        return found == m_answers.end() ? std::nullopt : std::optional(found->second);
    }

    platform::Dispatch& m_dispatch;
    mutable std::mutex m_mutex;
    std::map<std::string, platform::HttpResponse> m_answers;
    std::vector<platform::HttpRequest> m_requests;
};

} // namespace kestrin::test

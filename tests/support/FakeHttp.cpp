#include "support/FakeHttp.h"

#include <utility>

namespace kestrin::test {

using platform::AuthenticationDelegate;
using platform::HttpRequest;
using platform::HttpResponse;

void FakeHttp::send(const HttpRequest& request, AuthenticationDelegate* delegate, Completion done) {
    {
        const std::lock_guard lock(m_mutex);
        m_requests.push_back(request);
    }
    m_dispatch.mainAsync(
        [this, url = request.url, delegate, done = std::move(done)] { done(find(url, delegate)); });
}

std::optional<HttpResponse> FakeHttp::fetch(const HttpRequest& request, AuthenticationDelegate* delegate) {
    {
        const std::lock_guard lock(m_mutex);
        m_requests.push_back(request);
    }
    return find(request.url, delegate);
}

void FakeHttp::answer(const std::string& url, const std::string& body, int status) {
    const std::lock_guard lock(m_mutex);
    m_answers[url] = {status, body};
}

std::vector<HttpRequest> FakeHttp::requests() const {
    const std::lock_guard lock(m_mutex);
    return m_requests;
}

std::optional<HttpResponse> FakeHttp::find(const std::string& url, AuthenticationDelegate* delegate) const {
    constexpr std::string_view kSecure = "https://";
    if (url.starts_with(kSecure)) {
        const std::string host = url.substr(kSecure.size(), url.find('/', kSecure.size()) - kSecure.size());
        const bool accepted = delegate && delegate->acceptServerTrust(host);
        if (!accepted && !hasTrustedCertificate)
            return std::nullopt;
    }
    const std::lock_guard lock(m_mutex);
    const auto found = m_answers.find(url);
    return found == m_answers.end() ? std::nullopt : std::optional(found->second);
}

} // namespace kestrin::test

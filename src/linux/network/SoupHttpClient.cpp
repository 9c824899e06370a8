#include "linux/network/SoupHttpClient.h"

#include "linux/network/DataAddress.h"

#include <cassert>
#include <future>
#include <memory>
#include <utility>

namespace kestrin::gtk {

SoupHttpClient::SoupHttpClient(platform::Dispatch& dispatch, HttpOptions options) : m_dispatch(dispatch) {
    m_io.post([this, options = std::move(options)] {
        m_exchanges.emplace(options.hostMap, options.idleTimeout, options.log);
    });
}

SoupHttpClient::~SoupHttpClient() {
    // Nothing of this outlives the I/O thread, which is joined below.
    m_io.post([this] {
        m_exchanges->stop([this] {
            m_io.post([this] {
                m_exchanges.reset();
                m_io.quit();
            });
        });
    });
}

void SoupHttpClient::send(const platform::HttpRequest& request, platform::AuthenticationDelegate* delegate,
                          Completion done) {
    run(request, delegate,
        [&main = m_dispatch, done = std::move(done)](std::optional<platform::HttpResponse> response) {
            // Shared, as a task is copied and a body may be large.
            auto answer = std::make_shared<std::optional<platform::HttpResponse>>(std::move(response));
            main.mainAsync([done, answer] { done(std::move(*answer)); });
        });
}

std::optional<platform::HttpResponse> SoupHttpClient::fetch(const platform::HttpRequest& request,
                                                            platform::AuthenticationDelegate* delegate) {
    assert((isDataAddress(request.url) || !m_dispatch.isMain()) && "fetching blocks");
    auto answer = std::make_shared<std::promise<std::optional<platform::HttpResponse>>>();
    run(request, delegate,
        [answer](std::optional<platform::HttpResponse> response) { answer->set_value(std::move(response)); });
    return answer->get_future().get();
}

void SoupHttpClient::run(const platform::HttpRequest& request, platform::AuthenticationDelegate* delegate,
                         HttpExchange::Done done) {
    if (isDataAddress(request.url)) {
        auto body = decodeDataAddress(request.url);
        return done(body ? std::optional(platform::HttpResponse{SOUP_STATUS_OK, std::move(*body)})
                         : std::nullopt);
    }
    m_io.post([this, request, delegate, done = std::move(done)]() mutable {
        m_exchanges->run(std::move(request), delegate, std::move(done));
    });
}

} // namespace kestrin::gtk

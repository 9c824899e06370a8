#include "linux/network/HttpExchanges.h"

#include <utility>

namespace kestrin::gtk {

void HttpExchanges::run(platform::HttpRequest request, platform::AuthenticationDelegate* delegate,
                        HttpExchange::Done done) {
    auto slot = std::make_shared<std::weak_ptr<HttpExchange>>();
    auto exchange = std::make_shared<HttpExchange>(
        m_sessions, std::move(request), delegate, m_log.get(),
        [this, slot, done = std::move(done)](std::optional<platform::HttpResponse> response) {
            done(std::move(response));
            remove(slot->lock());
        });
    *slot = exchange;
    m_running.insert(exchange);
    exchange->start();
}

void HttpExchanges::stop(std::function<void()> ended) {
    if (m_running.empty())
        return ended();
    m_ended = std::move(ended);
    for (const auto& exchange : m_running)
        exchange->cancel();
}

void HttpExchanges::remove(const std::shared_ptr<HttpExchange>& exchange) {
    m_running.erase(exchange);
    if (m_running.empty() && m_ended)
        std::exchange(m_ended, nullptr)();
}

} // namespace kestrin::gtk

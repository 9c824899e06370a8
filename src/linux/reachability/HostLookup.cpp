#include "linux/reachability/HostLookup.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

namespace kestrin::gtk {

namespace {

template <class Address>
Address bytesOf(GInetAddress* address) {
    Address bytes;
    std::copy_n(g_inet_address_to_bytes(address), bytes.size(), bytes.begin());
    return bytes;
}

platform::IpAddress convert(GInetAddress* address) {
    if (g_inet_address_get_family(address) == G_SOCKET_FAMILY_IPV4)
        return bytesOf<platform::Ipv4Address>(address);
    return bytesOf<platform::Ipv6Address>(address);
}

} // namespace

struct HostLookup::Question {
    HostLookup& lookup;
    Done done;
};

void HostLookup::run(const std::string& host, Done done) {
    ++m_running;
    g_resolver_lookup_by_name_async(m_resolver.get(), host.c_str(), m_cancellable.get(), answer,
                                    new Question{*this, std::move(done)});
}

void HostLookup::answer(GObject* resolver, GAsyncResult* result, gpointer data) {
    const std::unique_ptr<Question> question(static_cast<Question*>(data));
    GList* const found = g_resolver_lookup_by_name_finish(G_RESOLVER(resolver), result, nullptr);
    std::vector<platform::IpAddress> addresses;
    for (const GList* each = found; each; each = each->next)
        addresses.push_back(convert(G_INET_ADDRESS(each->data)));
    g_resolver_free_addresses(found);
    if (!question->lookup.m_ended)
        question->done(addresses);
    question->lookup.remove();
}

void HostLookup::stop(std::function<void()> ended) {
    m_ended = std::move(ended);
    g_cancellable_cancel(m_cancellable.get());
    ++m_running;
    remove();
}

void HostLookup::remove() {
    if (--m_running == 0 && m_ended)
        m_ended();
}

} // namespace kestrin::gtk

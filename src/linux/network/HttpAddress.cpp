#include "linux/network/HttpAddress.h"

#include <libsoup/soup.h>

#include <algorithm>
#include <cstring>

namespace kestrin::gtk {

namespace {

constexpr auto kFlags = static_cast<GUriFlags>(SOUP_HTTP_URI_FLAGS);

/// Blanks and line ends in an address would end up in the request as they are.
bool isPrintable(const std::string& url) {
    return std::ranges::all_of(url, [](char c) { return c > ' ' && c <= '~'; });
}

bool canBeRequested(GUri* uri) {
    const char* scheme = g_uri_get_scheme(uri);
    const char* host = g_uri_get_host(uri);
    return (std::strcmp(scheme, "http") == 0 || std::strcmp(scheme, "https") == 0) && host && *host;
}

} // namespace

GAddress parseHttpAddress(const std::string& url) {
    if (!isPrintable(url))
        return nullptr;
    GAddress uri(g_uri_parse(url.c_str(), kFlags, nullptr));
    return uri && canBeRequested(uri.get()) ? std::move(uri) : nullptr;
}

std::optional<std::string> resolveRedirect(const std::string& from, const char* location) {
    const GAddress base = parseHttpAddress(from);
    const GAddress uri(g_uri_parse_relative(base.get(), location, kFlags, nullptr));
    if (!uri || !canBeRequested(uri.get()))
        return std::nullopt;
    const GText text(g_uri_to_string(uri.get()));
    return text.get();
}

} // namespace kestrin::gtk

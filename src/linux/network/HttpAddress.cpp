#include "linux/network/HttpAddress.h"

#include <libsoup/soup.h>

#include <algorithm>
#include <cstring>
#include <string_view>

namespace kestrin::gtk {

namespace {

constexpr auto kFlags = static_cast<GUriFlags>(SOUP_HTTP_URI_FLAGS);

/// Whether all characters can stand in an address; others would end up in the request as they are.
bool isWellFormed(const std::string& url) {
    constexpr std::string_view kNowhere = "\"<>\\^`{|}";
    return std::ranges::all_of(
        url, [&](char c) { return c > ' ' && c <= '~' && kNowhere.find(c) == kNowhere.npos; });
}

bool canBeRequested(GUri* uri) {
    const char* scheme = g_uri_get_scheme(uri);
    const char* host = g_uri_get_host(uri);
    return (std::strcmp(scheme, "http") == 0 || std::strcmp(scheme, "https") == 0) && host && *host;
}

} // namespace

GAddress parseHttpAddress(const std::string& url) {
    if (!isWellFormed(url))
        return nullptr;
    GAddress uri(g_uri_parse(url.c_str(), kFlags, nullptr));
    return uri && canBeRequested(uri.get()) ? std::move(uri) : nullptr;
}

std::optional<std::string> resolveRedirect(const std::string& from, const char* location) {
    const GAddress base = parseHttpAddress(from);
    // Servers are careless here, and every client puts up with it.
    const GText escaped(g_uri_escape_string(
        location, "%" G_URI_RESERVED_CHARS_GENERIC_DELIMITERS G_URI_RESERVED_CHARS_SUBCOMPONENT_DELIMITERS,
        false));
    const GAddress uri(g_uri_parse_relative(base.get(), escaped.get(), kFlags, nullptr));
    if (!uri || !canBeRequested(uri.get()))
        return std::nullopt;
    const GText text(g_uri_to_string(uri.get()));
    return text.get();
}

} // namespace kestrin::gtk

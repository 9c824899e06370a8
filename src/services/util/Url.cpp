#include "services/util/Url.h"

#include <algorithm>

namespace kestrin {

namespace {

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

bool isSchemeCharacter(char c) {
    return isLetter(c) || (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.';
}

bool isBlank(char c) { return static_cast<unsigned char>(c) <= ' ' || c == 0x7F; }

std::string_view withoutPort(std::string_view authority) {
    const auto bracket = authority.find(']');
    if (authority.starts_with('[') && bracket != std::string_view::npos)
        return authority.substr(0, bracket + 1);
    return authority.substr(0, authority.find(':'));
}

} // namespace

std::optional<std::string_view> urlScheme(std::string_view url) {
    const auto colon = url.find(':');
    if (colon == 0 || colon == std::string_view::npos)
        return std::nullopt;
    const std::string_view scheme = url.substr(0, colon);
    const bool valid = isLetter(scheme.front()) && std::ranges::all_of(scheme, isSchemeCharacter);
    return valid ? std::optional(scheme) : std::nullopt;
}

std::optional<std::string_view> urlHost(std::string_view url) {
    const auto scheme = urlScheme(url);
    if (!scheme || !url.substr(scheme->size()).starts_with("://"))
        return std::nullopt;
    url.remove_prefix(scheme->size() + 3);
    std::string_view authority = url.substr(0, url.find_first_of("/?#"));
    if (std::ranges::any_of(authority, isBlank))
        return std::nullopt;
    const auto at = authority.rfind('@');
    if (at != std::string_view::npos)
        authority.remove_prefix(at + 1);
    const std::string_view host = withoutPort(authority);
    return host.empty() ? std::nullopt : std::optional(host);
}

} // namespace kestrin

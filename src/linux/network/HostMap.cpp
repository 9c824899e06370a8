#include "linux/network/HostMap.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>

namespace kestrin::gtk {
namespace {

[[noreturn]] void fail(std::string_view part, const char* what) {
    throw std::invalid_argument("host map: '" + std::string(part) + "': " + what +
                                " (expected HOST=ADDRESS:PORT)");
}

std::string lowercase(std::string_view text) {
    std::string result(text);
    std::ranges::transform(result, result.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    return result;
}

/// Whether it can be a name or a numeric address, colons aside.
bool isPlain(std::string_view name) {
    constexpr std::string_view kReserved = "/@=[]";
    return !name.empty() && std::ranges::all_of(name, [&](char c) {
        return c > ' ' && c <= '~' && kReserved.find(c) == kReserved.npos;
    });
}

std::uint16_t parsePort(std::string_view text) {
    std::uint16_t port = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), port);
    if (error != std::errc() || end != text.data() + text.size() || port == 0)
        fail(text, "the port is not a number from 1 to 65535");
    return port;
}

std::string parseAddress(std::string_view text) {
    const bool bracketed = text.starts_with('[') && text.ends_with(']');
    const std::string_view address = bracketed ? text.substr(1, text.size() - 2) : text;
    if (!isPlain(address))
        fail(text, "this is no address");
    if (!bracketed && address.find(':') != address.npos)
        fail(text, "an IPv6 address stands in brackets");
    return std::string(address);
}

} // namespace

HostMap HostMap::parse(std::string_view text) {
    HostMap map;
    while (!text.empty()) {
        const std::string_view entry = text.substr(0, text.find(','));
        text.remove_prefix(std::min(entry.size() + 1, text.size()));
        const auto equals = entry.find('=');
        if (equals == entry.npos)
            fail(entry, "'=' is missing");
        map.add(entry.substr(0, equals), entry.substr(equals + 1));
    }
    return map;
}

void HostMap::add(std::string_view host, std::string_view target) {
    if (!isPlain(host) || host.find(':') != host.npos)
        fail(host, "the host is a bare name, without scheme and port");
    const auto colon = target.rfind(':');
    if (colon == target.npos || target.ends_with(']'))
        fail(target, "the port is missing");
    if (!m_targets
             .try_emplace(lowercase(host), parseAddress(target.substr(0, colon)),
                          parsePort(target.substr(colon + 1)))
             .second)
        fail(host, "the host is named twice");
}

const HostMap::Target* HostMap::find(std::string_view host) const {
    const auto found = m_targets.find(lowercase(host));
    return found == m_targets.end() ? nullptr : &found->second;
}

} // namespace kestrin::gtk

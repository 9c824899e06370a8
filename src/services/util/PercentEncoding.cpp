#include "services/util/PercentEncoding.h"

#include "services/util/Utf8.h"

#include <charconv>
#include <cstdint>

namespace kestrin {

namespace {

constexpr std::string_view kHostAllowed =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789!$&'()*+,-.:;=[]_~";

/// The byte that two hexadecimal digits write.
std::optional<char> byteOf(std::string_view digits) {
    std::uint8_t byte = 0;
    const char* const end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, byte, 16);
    const bool isWhole = digits.size() == 2 && error == std::errc() && stop == end;
    return isWhole ? std::optional(char(byte)) : std::nullopt;
}

} // namespace

std::string percentEncodeForHost(std::string_view text) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string out;
    out.reserve(text.size());
    for (const char c : text) {
        if (kHostAllowed.find(c) != std::string_view::npos) {
            out += c;
            continue;
        }
        const auto byte = std::uint8_t(c);
        out += {'%', kDigits[byte >> 4], kDigits[byte & 15]};
    }
    return out;
}

std::optional<std::string> percentDecode(std::string_view text) {
    std::string out;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] != '%') {
            out += text[at];
            continue;
        }
        const auto byte = byteOf(text.substr(at + 1, 2));
        if (!byte)
            return std::nullopt;
        out += *byte;
        at += 2;
    }
    return isUtf8(out) ? std::optional(out) : std::nullopt;
}

} // namespace kestrin

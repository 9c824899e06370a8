#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace kestrin {

/// Standard base64 (RFC 4648) with padding and without line breaks. Thread: any.

/// Characters that `bytes` bytes take.
constexpr std::size_t base64Length(std::size_t bytes) { return (bytes + 2) / 3 * 4; }

/// Writes exactly base64Length(bytes.size()) characters to `out`.
void base64Encode(std::span<const std::uint8_t> bytes, char* out);
std::string base64Encode(std::span<const std::uint8_t> bytes);
std::string base64Encode(std::string_view bytes);

/// With a line end (CR LF) after every 64 characters, but for the last line.
std::string base64EncodeInLines(std::span<const std::uint8_t> bytes);

/// The bytes of `text`; none when its length is no multiple of 4, a character is outside the alphabet, or
/// padding stands anywhere but at the end. An empty text gives no bytes.
std::optional<std::string> base64Decode(std::string_view text);

/// What decoding that many characters may write to, a little more than what it gives.
constexpr std::size_t base64DecodingRoom(std::size_t characters) { return characters / 4 * 3 + 1; }
/// The same to `out`, which has room for the above; the number of bytes.
std::optional<std::size_t> base64Decode(std::string_view text, char* out);

} // namespace kestrin

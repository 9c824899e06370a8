#include "services/util/Base64.h"

#include <array>
#include <utility>

namespace kestrin {

namespace {

constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

constexpr std::size_t kLineLength = 64;

// Set in a table's value, and so in any sum of values, when a character is outside the alphabet.
constexpr std::uint32_t kInvalid = 1U << 24;

using Table = std::array<std::uint32_t, 256>;

/// Where the six bits of a group's character at `place` stand in its three bytes, the first byte lowest.
constexpr Table makeTable(int place) {
    Table table{};
    table.fill(kInvalid);
    for (std::uint32_t i = 0; i < 64; ++i) {
        const std::uint32_t bits = i << (18 - 6 * place);
        table[std::uint8_t(kAlphabet[i])] = bits >> 16 | (bits & 0xFF00) | (bits & 0xFF) << 16;
    }
    return table;
}

constexpr std::array<Table, 4> kTables{makeTable(0), makeTable(1), makeTable(2), makeTable(3)};

/// Writes three bytes and a fourth of no meaning, which lets the four go out as one word.
std::uint32_t decodeGroup(const char* group, char* out) {
    const std::uint32_t bits = kTables[0][std::uint8_t(group[0])] | kTables[1][std::uint8_t(group[1])] |
                               kTables[2][std::uint8_t(group[2])] | kTables[3][std::uint8_t(group[3])];
    out[0] = char(bits);
    out[1] = char(bits >> 8);
    out[2] = char(bits >> 16);
    out[3] = char(bits >> 24);
    return bits;
}

void encodeGroup(std::uint32_t bits, char* out) {
    out[0] = kAlphabet[bits >> 18];
    out[1] = kAlphabet[bits >> 12 & 63];
    out[2] = kAlphabet[bits >> 6 & 63];
    out[3] = kAlphabet[bits & 63];
}

std::size_t paddingOf(std::string_view text) {
    return text.ends_with("==") ? 2 : text.ends_with('=') ? 1 : 0;
}

} // namespace

void base64Encode(std::span<const std::uint8_t> bytes, char* out) {
    const std::uint8_t* in = bytes.data();
    std::size_t left = bytes.size();
    for (; left >= 3; left -= 3, in += 3, out += 4)
        encodeGroup(std::uint32_t(in[0]) << 16 | std::uint32_t(in[1]) << 8 | in[2], out);
    if (left == 0)
        return;
    encodeGroup(std::uint32_t(in[0]) << 16 | (left == 2 ? std::uint32_t(in[1]) << 8 : 0), out);
    out[3] = '=';
    if (left == 1)
        out[2] = '=';
}

std::string base64Encode(std::span<const std::uint8_t> bytes) {
    std::string text(base64Length(bytes.size()), '\0');
    base64Encode(bytes, text.data());
    return text;
}

std::string base64Encode(std::string_view bytes) {
    return base64Encode(std::span(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()));
}

std::string base64EncodeInLines(std::span<const std::uint8_t> bytes) {
    const std::string text = base64Encode(bytes);
    std::string lines;
    lines.reserve(text.size() + text.size() / kLineLength * 2);
    for (std::size_t at = 0; at < text.size(); at += kLineLength) {
        if (at > 0)
            lines += "\r\n";
        lines.append(text, at, kLineLength);
    }
    return lines;
}

std::optional<std::size_t> base64Decode(std::string_view text, char* out) {
    if (text.size() % 4 != 0)
        return std::nullopt;
    const std::size_t padding = paddingOf(text);
    const char* in = text.data();
    const char* const end = in + text.size() - (padding == 0 ? 0 : 4);
    std::uint32_t seen = 0;
    for (; in != end; in += 4, out += 3)
        seen |= decodeGroup(in, out);
    if (padding != 0) {
        const std::array<char, 4> last{in[0], in[1], padding == 2 ? 'A' : in[2], 'A'};
        seen |= decodeGroup(last.data(), out);
    }
    return seen & kInvalid ? std::nullopt : std::optional(text.size() / 4 * 3 - padding);
}

std::optional<std::string> base64Decode(std::string_view text) {
    std::string bytes(base64DecodingRoom(text.size()), '\0');
    const auto size = base64Decode(text, bytes.data());
    bytes.resize(size.value_or(0));
    return size ? std::optional(std::move(bytes)) : std::nullopt;
}

} // namespace kestrin

#include "services/util/Base64.h"

#include <array>

namespace kestrin {

namespace {

constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// Set in a table's value, and so in any sum of values, when a character is outside the alphabet.
constexpr std::uint32_t kInvalid = 1U << 24;

using Table = std::array<std::uint32_t, 256>;

constexpr Table makeTable(unsigned shift) {
    Table table{};
    table.fill(kInvalid);
    for (std::uint32_t i = 0; i < 64; ++i)
        table[std::uint8_t(kAlphabet[i])] = i << shift;
    return table;
}

constexpr std::array<Table, 4> kTables{makeTable(18), makeTable(12), makeTable(6), makeTable(0)};

std::uint32_t decodeGroup(const char* group) {
    return kTables[0][std::uint8_t(group[0])] | kTables[1][std::uint8_t(group[1])] |
           kTables[2][std::uint8_t(group[2])] | kTables[3][std::uint8_t(group[3])];
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

std::optional<std::string> base64Decode(std::string_view text) {
    if (text.size() % 4 != 0)
        return std::nullopt;
    const std::size_t padding = paddingOf(text);
    std::string bytes(text.size() / 4 * 3, '\0');
    char* out = bytes.data();
    const std::size_t whole = padding == 0 ? text.size() : text.size() - 4;
    std::uint32_t seen = 0;
    const auto put = [&](std::uint32_t bits) {
        seen |= bits;
        *out++ = char(bits >> 16);
        *out++ = char(bits >> 8);
        *out++ = char(bits);
    };
    for (std::size_t i = 0; i < whole; i += 4)
        put(decodeGroup(text.data() + i));
    if (padding != 0) {
        std::array<char, 4> last{text[whole], text[whole + 1], text[whole + 2], 'A'};
        if (padding == 2)
            last[2] = 'A';
        put(decodeGroup(last.data()));
    }
    if (seen & kInvalid)
        return std::nullopt;
    bytes.resize(bytes.size() - padding);
    return bytes;
}

} // namespace kestrin

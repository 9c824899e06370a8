#include "services/util/Utf8.h"

#include <cstddef>
#include <cstdint>

namespace kestrin {

namespace {

/// How many bytes the character at the head of `text` has; 0 when it is malformed.
std::size_t characterLength(std::string_view text) {
    const auto first = std::uint8_t(text[0]);
    if (first < 0x80)
        return 1;
    const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || text.size() < length)
        return 0;
    std::uint32_t code = first & (0x7FU >> length);
    for (const char trail : text.substr(1, length - 1)) {
        if ((trail & 0xC0) != 0x80)
            return 0;
        code = code << 6 | (trail & 0x3F);
    }
    const bool isOverlong = code < (length == 4 ? 0x10000U : length == 3 ? 0x800U : 0x80U);
    const bool isSurrogate = code >> 11 == 0x1B;
    return isOverlong || isSurrogate || code > 0x10FFFF ? 0 : length;
}

} // namespace

bool isUtf8(std::string_view text) {
    while (!text.empty()) {
        const std::size_t length = characterLength(text);
        if (length == 0)
            return false;
        text.remove_prefix(length);
    }
    return true;
}

} // namespace kestrin

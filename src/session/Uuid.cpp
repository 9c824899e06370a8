#include "session/Uuid.h"

#include <cstdint>

namespace kestrin::session {

namespace {

std::uint64_t hash(std::string_view text, std::uint64_t seed) {
    std::uint64_t value = 0xCBF29CE484222325U ^ seed * 0x9E3779B97F4A7C15U;
    for (const char c : text)
        value = (value ^ std::uint8_t(c)) * 0x100000001B3U;
    value = (value ^ value >> 30U) * 0xBF58476D1CE4E5B9U;
    value = (value ^ value >> 27U) * 0x94D049BB133111EBU;
    return value ^ value >> 31U;
}

} // namespace

std::string makeUuid(std::string_view text, unsigned number) {
    const std::uint64_t first = hash(text, 2 * std::uint64_t(number)),
                        second = hash(text, 2 * std::uint64_t(number) + 1);
    const auto digit = [&](int i) {
        if (i == 12)
            return 8U; // version: made up by the application
        const unsigned value = unsigned((i < 16 ? first >> (4 * i) : second >> (4 * (i - 16))) & 15U);
        return i == 16 ? 8U | (value & 3U) : value;
    };
    std::string uuid;
    for (int i = 0; i < 32; ++i) {
        if (i == 8 || i == 12 || i == 16 || i == 20)
            uuid += '-';
        uuid += "0123456789ABCDEF"[digit(i)];
    }
    return uuid;
}

} // namespace kestrin::session

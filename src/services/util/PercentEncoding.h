#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kestrin {

/// Escapes every byte that cannot stand in the host of an address: slashes, the question mark and percent
/// signs too, so that a whole address becomes one opaque text. Thread: any.
std::string percentEncodeForHost(std::string_view text);

/// None for an escape that is cut off or not hexadecimal, and for what is no UTF-8 then. A plus sign stays.
/// Thread: any.
std::optional<std::string> percentDecode(std::string_view text);

} // namespace kestrin

#pragma once

#include <string_view>

namespace kestrin {

/// Whether the bytes are well-formed UTF-8. Thread: any.
bool isUtf8(std::string_view text);

} // namespace kestrin

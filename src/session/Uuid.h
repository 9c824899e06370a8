#pragma once

#include <string>
#include <string_view>

namespace kestrin::session {

/// A UUID in upper case that is always the same for the same text and number, and another for any other.
std::string makeUuid(std::string_view text, unsigned number);

} // namespace kestrin::session

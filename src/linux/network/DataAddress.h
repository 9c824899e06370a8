#pragma once

#include <optional>
#include <string>

namespace kestrin::gtk {

bool isDataAddress(const std::string& url);
/// What a `data:` address carries; none when it is malformed. Thread: any.
std::optional<std::string> decodeDataAddress(const std::string& url);

} // namespace kestrin::gtk

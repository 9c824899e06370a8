#pragma once

#include <string>

namespace kestrin {

/// The key string that opens the maker's local template, used instead of the settings when the feature flag
/// "local" is set. Thread: any.
std::string localKeyString();

} // namespace kestrin

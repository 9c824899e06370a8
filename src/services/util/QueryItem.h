#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestrin {

/// One "name=value" of an address's query, decoded; without an equals sign there is no value.
struct QueryItem {
    std::string name;
    std::optional<std::string> value;
};

/// In their order; none when the address has no query, or is none: it holds a blank, a control character or
/// anything beyond ASCII, or an escape in its query is broken. Thread: any.
std::optional<std::vector<QueryItem>> queryItems(std::string_view url);

} // namespace kestrin

#pragma once

#include <boost/json/fwd.hpp>

#include <optional>
#include <string_view>

namespace kestrin::session {

/// A JSON document whose numbers are the doubles nearest to their text, which Boost.JSON's own reading misses
/// by a digit now and then. None when the text is no JSON.
std::optional<boost::json::value> parseExactly(std::string_view text);

} // namespace kestrin::session

#pragma once

#include <boost/json/value.hpp>

#include <string>
#include <string_view>
#include <variant>

namespace kestrin::session {

/// The document, or "not JSON at line N".
std::variant<boost::json::value, std::string> parseDocument(std::string_view text);

} // namespace kestrin::session

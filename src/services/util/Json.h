#pragma once

#include <boost/json/fwd.hpp>

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

namespace kestrin {

/// The deepest nesting of lists and maps that is read or written.
inline constexpr std::size_t kMaxJsonDepth = 512;

/// Any JSON value, a lone number or text included; none when the text is not JSON in UTF-8 or nests deeper
/// than the bound. Thread: any, as for all below.
std::optional<boost::json::value> parseJson(std::string_view text);
/// The same, faster for large texts: the value's memory is one piece, given back when the value and all that
/// was moved out of it are gone. Changing a part of it changes the whole, as to threads.
std::optional<boost::json::value> parseJsonInOnePiece(std::string_view text);

/// Compact text; none when the value holds a number that JSON cannot write or a text that is not UTF-8, or
/// nests deeper than the bound.
std::optional<std::string> serializeJson(const boost::json::value& value);
std::optional<std::string> serializeJson(const boost::json::object& map);
std::optional<std::string> serializeJson(const boost::json::array& list);

using JsonPath = std::initializer_list<std::string_view>;

/// The member at the end of the path, whatever its value; null when a step is missing or is no map.
const boost::json::value* findMember(const boost::json::object& map, JsonPath path);
/// The same from any value, or from null.
const boost::json::value* findMember(const boost::json::value* value, JsonPath path);

/// The following take null for a missing value.

/// There and not JSON null: false, 0 and "" are present.
bool isPresent(const boost::json::value* value);
/// true, or a number other than 0; texts, lists and maps are false.
bool isTrue(const boost::json::value* value);
/// None for anything but text.
std::optional<std::string> textOf(const boost::json::value* value);
/// A text as it is, any other value as its JSON; none for JSON null.
std::optional<std::string> textOrJsonOf(const boost::json::value* value);
/// A number without its fraction (7.9 is 7), kept within the type; none for anything but a number or boolean.
std::optional<std::int32_t> wholeNumberOf(const boost::json::value* value);

/// The text, or JSON null when it is absent.
boost::json::value textOrNull(const std::optional<std::string>& text);

} // namespace kestrin

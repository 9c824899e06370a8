#include "services/util/Json.h"

#include "services/util/Numbers.h"
#include "services/util/Utf8.h"

#include <boost/json.hpp>

#include <algorithm>
#include <cmath>
#include <exception>
#include <utility>

namespace kestrin {

namespace json = boost::json;

namespace {

bool canBeWritten(const json::value& value, std::size_t depth);

bool canBeWritten(const json::array& list, std::size_t depth) {
    return depth > 0 && std::ranges::all_of(
                            list, [depth](const json::value& item) { return canBeWritten(item, depth - 1); });
}

bool canBeWritten(const json::object& map, std::size_t depth) {
    return depth > 0 && std::ranges::all_of(map, [depth](const json::key_value_pair& item) {
               return isUtf8(item.key()) && canBeWritten(item.value(), depth - 1);
           });
}

bool canBeWritten(const json::value& value, std::size_t depth) {
    switch (value.kind()) {
    case json::kind::string:
        return isUtf8(value.get_string());
    case json::kind::double_:
        return std::isfinite(value.get_double());
    case json::kind::array:
        return canBeWritten(value.get_array(), depth);
    case json::kind::object:
        return canBeWritten(value.get_object(), depth);
    default:
        return true;
    }
}

template <class Value>
std::optional<std::string> write(const Value& value) {
    return canBeWritten(value, kMaxJsonDepth) ? std::optional(json::serialize(value)) : std::nullopt;
}

std::optional<json::value> parse(std::string_view text, json::storage_ptr memory) {
    json::parse_options options;
    options.max_depth = kMaxJsonDepth;
    json::error_code error;
    try {
        auto value = json::parse(text, error, std::move(memory), options);
        return error ? std::nullopt : std::optional(std::move(value));
    } catch (const std::exception&) {
        return std::nullopt; // no memory for it, or a text longer than the library takes
    }
}

} // namespace

std::optional<json::value> parseJson(std::string_view text) { return parse(text, {}); }

std::optional<json::value> parseJsonInOnePiece(std::string_view text) {
    return parse(text, json::make_shared_resource<json::monotonic_resource>());
}

std::optional<std::string> serializeJson(const json::value& value) { return write(value); }
std::optional<std::string> serializeJson(const json::object& map) { return write(map); }
std::optional<std::string> serializeJson(const json::array& list) { return write(list); }

const json::value* findMember(const json::value* value, JsonPath path) {
    for (const std::string_view key : path) {
        const json::object* map = value ? value->if_object() : nullptr;
        value = map ? map->if_contains(key) : nullptr;
    }
    return value;
}

const json::value* findMember(const json::object& map, JsonPath path) {
    if (path.size() == 0)
        return nullptr;
    const json::value* value = map.if_contains(*path.begin());
    for (const std::string_view* key = path.begin() + 1; key != path.end(); ++key)
        value = findMember(value, {*key});
    return value;
}

bool isPresent(const json::value* value) { return value && !value->is_null(); }

bool isTrue(const json::value* value) {
    if (!value)
        return false;
    if (const bool* flag = value->if_bool())
        return *flag;
    return value->is_number() && value->to_number<double>() != 0;
}

std::optional<std::string> textOf(const json::value* value) {
    const json::string* text = value ? value->if_string() : nullptr;
    return text ? std::optional(std::string(text->data(), text->size())) : std::nullopt;
}

std::optional<std::string> textOrJsonOf(const json::value* value) {
    if (!isPresent(value))
        return std::nullopt;
    return value->is_string() ? textOf(value) : serializeJson(*value);
}

std::optional<std::int32_t> wholeNumberOf(const json::value* value) {
    if (!value || !(value->is_number() || value->is_bool()))
        return std::nullopt;
    return saturatingCast<std::int32_t>(value->is_bool() ? value->get_bool() : value->to_number<double>());
}

json::value textOrNull(const std::optional<std::string>& text) {
    return text ? json::value(json::string(*text)) : json::value();
}

} // namespace kestrin

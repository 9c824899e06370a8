#include "session/recording/ExactJson.h"

#include <boost/json.hpp>
#include <boost/json/basic_parser_impl.hpp>

#include <charconv>
#include <cstdint>
#include <string>

namespace kestrin::session {

namespace {

namespace json = boost::json;
using Text = json::string_view;
using Error = json::error_code;

/// Puts a document together from what the parser reports.
struct Builder {
    static constexpr std::size_t max_object_size = -1, max_array_size = -1, max_key_size = -1,
                                 max_string_size = -1;
    json::value_stack stack;
    std::string number;

    bool on_document_begin(Error&) { return true; }
    bool on_document_end(Error&) { return true; }
    bool on_object_begin(Error&) { return true; }
    bool on_object_end(std::size_t count, Error&) { return stack.push_object(count), true; }
    bool on_array_begin(Error&) { return true; }
    bool on_array_end(std::size_t count, Error&) { return stack.push_array(count), true; }
    bool on_key_part(Text text, std::size_t, Error&) { return stack.push_chars(text), true; }
    bool on_key(Text text, std::size_t, Error&) { return stack.push_key(text), true; }
    bool on_string_part(Text text, std::size_t, Error&) { return stack.push_chars(text), true; }
    bool on_string(Text text, std::size_t, Error&) { return stack.push_string(text), true; }
    bool on_number_part(Text text, Error&) { return number.append(text.begin(), text.end()), true; }
    bool on_int64(std::int64_t value, Text text, Error& error) {
        if (value == 0) // which may be -0
            return on_double(0, text, error);
        number.clear();
        return stack.push_int64(value), true;
    }
    bool on_uint64(std::uint64_t value, Text, Error&) {
        number.clear();
        return stack.push_uint64(value), true;
    }
    bool on_double(double nearby, Text text, Error&) {
        number.append(text.begin(), text.end());
        double value = 0;
        const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), value);
        stack.push_double(error == std::errc() ? value : nearby);
        number.clear();
        return true;
    }
    bool on_bool(bool value, Error&) { return stack.push_bool(value), true; }
    bool on_null(Error&) { return stack.push_null(), true; }
    bool on_comment_part(Text, Error&) { return true; }
    bool on_comment(Text, Error&) { return true; }
};

} // namespace

std::optional<json::value> parseExactly(std::string_view text) {
    json::basic_parser<Builder> parser{json::parse_options{}};
    parser.handler().stack.reset();
    Error error;
    const std::size_t read = parser.write_some(false, text.data(), text.size(), error);
    if (error || read != text.size())
        return {};
    return parser.handler().stack.release();
}

} // namespace kestrin::session

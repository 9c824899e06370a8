#include "session/JsonDocument.h"

#include <boost/json/stream_parser.hpp>

#include <algorithm>

namespace kestrin::session {

std::variant<boost::json::value, std::string> parseDocument(std::string_view text) {
    boost::json::stream_parser parser;
    boost::json::error_code error;
    std::size_t read = parser.write_some(text, error);
    if (!error && read == text.size())
        parser.finish(error);
    if (!error && read == text.size())
        return parser.release();
    const auto line = 1 + std::count(text.begin(), text.begin() + std::ptrdiff_t(read), '\n');
    return "not JSON at line " + std::to_string(line);
}

} // namespace kestrin::session

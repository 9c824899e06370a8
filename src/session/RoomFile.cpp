#include "session/RoomFile.h"

#include "linux/storage/PixbufCodec.h"
#include "session/DefaultRoom.h"
#include "session/Field.h"
#include "session/FileBytes.h"
#include "session/RoomReader.h"

#include <boost/json.hpp>

#include <algorithm>
#include <utility>

namespace kestrin::session {

namespace {

constexpr std::size_t kMaximumBytes = 8'000'000;

/// The document, or the message of its first error with the line it is on.
std::variant<boost::json::value, std::string> parse(std::string_view text) {
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

} // namespace

RoomResult readRoom(std::string_view json, const std::string& name, const std::filesystem::path& folder,
                    const platform::ImageCodec& codec) {
    const auto document = parse(json);
    if (const auto* error = std::get_if<std::string>(&document))
        return name + ": " + *error;
    try {
        return std::make_shared<const Room>(
            RoomReader(folder, codec).read(Field(std::get<boost::json::value>(document))));
    } catch (const FieldError& error) {
        return name + ": " + error.what();
    }
}

RoomResult loadRoom(const std::filesystem::path& file) {
    const std::optional<std::string> text = readFile(file, kMaximumBytes);
    if (!text)
        return file.string() + ": cannot be read";
    return readRoom(*text, file.string(), file.parent_path(), gtk::PixbufCodec());
}

std::shared_ptr<const Room> defaultRoom() {
    return std::get<0>(readRoom(kDefaultRoom, "room.json", {}, gtk::PixbufCodec()));
}

} // namespace kestrin::session

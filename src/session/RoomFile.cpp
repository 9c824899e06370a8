#include "session/RoomFile.h"

#include "linux/storage/PixbufCodec.h"
#include "session/DefaultRoom.h"
#include "session/Field.h"
#include "session/FileBytes.h"
#include "session/JsonDocument.h"
#include "session/RoomReader.h"

#include <boost/json.hpp>

#include <utility>

namespace kestrin::session {

namespace {

constexpr std::size_t kMaximumBytes = 8'000'000;

} // namespace

RoomResult readRoom(std::string_view json, const std::string& name, const std::filesystem::path& folder,
                    const platform::ImageCodec& codec) {
    const auto document = parseDocument(json);
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

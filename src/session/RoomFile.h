#pragma once

#include "session/Room.h"

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <variant>

namespace kestrin::session {

/// A room, or one line that says what is wrong with its description: "FILE: FIELD: MESSAGE".
using RoomResult = std::variant<std::shared_ptr<const Room>, std::string>;

/// Reads a description (docs/rooms.md). Picture files are looked for in `folder`; `name` stands for the file
/// in messages. Thread: any.
RoomResult readRoom(std::string_view json, const std::string& name, const std::filesystem::path& folder,
                    const platform::ImageCodec& codec);
/// Picture files are relative to the file itself. Thread: any.
RoomResult loadRoom(const std::filesystem::path& file);
/// The room that is always there. Thread: any.
std::shared_ptr<const Room> defaultRoom();

} // namespace kestrin::session

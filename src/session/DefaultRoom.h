#pragma once

#include <string_view>

namespace kestrin::session {

/// The text of share/rooms/room.json.
extern const std::string_view kDefaultRoom;

} // namespace kestrin::session

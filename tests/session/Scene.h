#pragma once

#include "session/RoomFile.h"
#include "session/SimulatedTracking.h"

#include <string>

namespace kestrin::session::test {

/// A room from its description, which must be right.
std::shared_ptr<const Room> makeRoom(const std::string& json);

/// A grey room with black discs on white squares at known places, seen from several sides; nothing is
/// symmetric.
std::shared_ptr<const Room> markRoom();

} // namespace kestrin::session::test

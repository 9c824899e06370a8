#pragma once

#include "linux/storage/PixbufCodec.h"
#include "session/RoomFile.h"

#include <gtest/gtest.h>

namespace kestrin::session::test {

/// A room from its description, which must be right.
inline std::shared_ptr<const Room> makeRoom(const std::string& json) {
    const RoomResult room = readRoom(json, "room.json", {}, gtk::PixbufCodec());
    EXPECT_EQ(room.index(), 0U) << std::get<1>(room);
    return std::get<0>(room);
}

} // namespace kestrin::session::test

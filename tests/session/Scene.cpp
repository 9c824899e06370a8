#include "Scene.h"

#include "linux/storage/PixbufCodec.h"

#include <gtest/gtest.h>

namespace kestrin::session::test {

std::shared_ptr<const Room> makeRoom(const std::string& json) {
    const RoomResult room = readRoom(json, "room.json", {}, gtk::PixbufCodec());
    EXPECT_EQ(room.index(), 0U) << std::get<1>(room);
    return std::get<0>(room);
}

std::shared_ptr<const Room> markRoom() {
    return makeRoom(R"({
      "surfaces": [
        {"name": "floor", "center": [0, 0, 0], "size": [6, 6], "facing": [0, 1, 0], "texture": "plain", "tint": [0.5, 0.5, 0.5], "glows": true},
        {"name": "wall", "center": [0, 1.5, -3], "size": [6, 3], "facing": [0, 0, 1], "texture": "plain", "tint": [0.6, 0.5, 0.4], "glows": true}
      ],
      "boxes": [{"name": "table", "center": [0, 0.375, 0], "size": [1.4, 0.75, 1.4], "texture": "plain", "tint": [0.5, 0.55, 0.5], "glows": true}],
      "marks": [
        {"center": [-0.3, 0.75, 0.25], "facing": [0, 1, 0], "radius": 0.02, "width": 0.1},
        {"center": [0.1, 0.75, 0.3], "facing": [0, 1, 0], "radius": 0.018, "width": 0.1},
        {"center": [0.33, 0.75, -0.2], "facing": [0, 1, 0], "radius": 0.02, "width": 0.1},
        {"center": [-0.12, 0.75, -0.3], "facing": [0, 1, 0], "radius": 0.022, "width": 0.1},
        {"center": [0, 0.75, 0], "facing": [0, 1, 0], "radius": 0.02, "width": 0.1},
        {"center": [0.5, 1.1, -3], "facing": [0, 0, 1], "radius": 0.05, "width": 0.2}
      ],
      "camera": {"period": 8, "sway": {"distance": 0.01, "angle": 1.5}, "path": [
        {"time": 0, "position": [0.4, 1.6, 1.2], "lookAt": [0.05, 0.75, 0]},
        {"time": 2, "position": [1.1, 1.9, 0.4], "lookAt": [0, 0.8, 0.05]},
        {"time": 4, "position": [0.1, 1.7, -1.3], "lookAt": [0, 0.7, 0]},
        {"time": 6, "position": [-1.2, 1.8, 0.3], "rotation": [-0.2764, -0.5813, -0.2163, 0.7342]}
      ]}
    })");
}

} // namespace kestrin::session::test

#include "Scene.h"

namespace kestrin::session::test {

namespace {

const std::string kCamera =
    R"("camera": {"period": 4, "path": [{"time": 0, "position": [0, 1, 2], "lookAt": [0, 1, 0]}]})";

/// A description with a camera and whatever else.
std::string with(const std::string& rest) { return "{" + rest + (rest.empty() ? "" : ", ") + kCamera + "}"; }

std::string withCamera(const std::string& camera) { return R"({"camera": )" + camera + "}"; }

std::string surface(const std::string& fields) { return with(R"("surfaces": [{)" + fields + "}]"); }

std::string errorOf(const std::string& json) {
    const RoomResult result = readRoom(json, "rooms/living.json", "/nowhere", gtk::PixbufCodec());
    const auto* error = std::get_if<std::string>(&result);
    return error ? *error : "no error";
}

TEST(RoomFile, EachFaultIsOneLineWithFileAndField) {
    const std::string fine = R"("name": "wall", "center": [0, 1, 0], "size": [1, 2], "facing": [0, 0, 1])";
    const std::string key = R"({"time": 0, "position": [0, 1, 2], "lookAt": [0, 1, 0]})";
    const std::vector<std::pair<std::string, std::string>> table{
        {"{\n  \"surfaces\": [\n    {,}]}", "not JSON at line 3"},
        {std::string(100, '[') + std::string(100, ']'), "not JSON at line 1"},
        {"{}", "camera: missing"},
        {with(R"("walls": [])"), "walls: unknown field"},
        {surface(fine), "surfaces[0].texture: missing"},
        {surface(fine + R"(, "texture": "velvet")"), "surfaces[0].texture: there is no texture \"velvet\""},
        {surface(fine + R"(, "texture": "a.png")"), "surfaces[0].texture: cannot read \"a.png\""},
        {surface(R"("name": "w", "size": [1, 2], "facing": [0, 0, 1], "center": [0, 1e999, 0])"),
         "surfaces[0].center: expected three coordinates of at most 1000 m"},
        {with(R"("light": {"lumens": -1})"), "light.lumens: expected a number from 0 to 100000"},
        {withCamera(R"({"period": 4, "path": []})"), "camera.path: expected at least one entry"},
        {withCamera(R"({"period": 4, "path": [)" + key + "," + key + "]}"),
         "camera.path[1].time: expected a time after that of the entry before"},
    };
    for (const auto& [json, error] : table)
        EXPECT_EQ(errorOf(json), "rooms/living.json: " + error) << json;
    EXPECT_EQ(errorOf(with("")), "no error");
}

} // namespace

} // namespace kestrin::session::test

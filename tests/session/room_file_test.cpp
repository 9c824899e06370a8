#include "Scene.h"

namespace kestrin::session::test {

namespace {

std::string errorOf(const std::string& json) {
    const RoomResult result = readRoom(json, "rooms/living.json", "/nowhere", gtk::PixbufCodec());
    const auto* error = std::get_if<std::string>(&result);
    return error ? *error : "no error";
}

TEST(RoomFile, EachFaultIsOneLineWithFileAndField) {
    const std::string key = R"({"time": 0, "position": [0, 1, 2], "lookAt": [0, 1, 0]})";
    const std::string camera = R"("camera": {"period": 4, "path": [)" + key + "]}";
    const std::string wall =
        R"({"surfaces": [{"name": "w", "center": [0, 1, 0], "size": [1, 2], "facing": [0, 0, 1], "texture": )";
    const std::vector<std::pair<std::string, std::string>> table{
        {"{\n  \"surfaces\": [\n    {,}]}", "not JSON at line 3"},
        {"{}", "camera: missing"},
        {R"({"walls": [],)" + camera + "}", "walls: unknown field"},
        {wall + R"("velvet"}],)" + camera + "}", "surfaces[0].texture: there is no texture \"velvet\""},
        {wall + R"("a.png"}],)" + camera + "}", "surfaces[0].texture: cannot read \"a.png\""},
        {R"({"light": {"lumens": -1},)" + camera + "}", "light.lumens: expected a number from 0 to 100000"},
        {R"({"camera": {"period": 4, "path": [)" + key + "," + key + "]}}",
         "camera.path[1].time: expected a time after that of the entry before"},
    };
    for (const auto& [json, error] : table)
        EXPECT_EQ(errorOf(json), "rooms/living.json: " + error) << json;
}

} // namespace

} // namespace kestrin::session::test

#include "Scene.h"
#include "linux/storage/PixbufCodec.h"
#include "session/Geometry.h"
#include "session/Texture.h"

#include <gmock/gmock.h>

#include <cmath>
#include <cstdlib>
#include <fstream>

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

struct Broken {
    std::string json, error;
};

TEST(RoomFile, EachFaultIsOneLineWithFileAndField) {
    const std::string fine = R"("name": "wall", "center": [0, 1, 0], "size": [1, 2], "facing": [0, 0, 1])";
    const std::string box = R"("name": "b", "center": [0, 0, 0], "texture": "oak")";
    const std::string place = R"("name": "p", "center": [0, 1, 0], "facing": [0, 0, 1])";
    const std::string key = R"({"time": 0, "position": [0, 1, 2], "lookAt": [0, 1, 0]})";
    const std::vector<Broken> table{
        {"", "not JSON at line 1"},
        {"{\n  \"surfaces\": [\n    {,}]}", "not JSON at line 3"},
        {with("") + " x", "not JSON at line 1"},
        {"[1, 2]", "expected an object"},
        {"{}", "camera: missing"},
        {with(R"("walls": [])"), "walls: unknown field"},
        {with(R"("surfaces": {})"), "surfaces: expected a list"},
        {with(R"("surfaces": [3])"), "surfaces[0]: expected an object"},
        {surface(fine), "surfaces[0].texture: missing"},
        {surface(fine + R"(, "texture": "plain", "colour": 1)"), "surfaces[0].colour: unknown field"},
        {surface(fine + R"(, "texture": "velvet")"), "surfaces[0].texture: there is no texture \"velvet\""},
        {surface(fine + R"(, "texture": 7)"), "surfaces[0].texture: expected a text"},
        {surface(fine + R"(, "texture": "a.png")"), "surfaces[0].texture: cannot read \"a.png\""},
        {surface(fine + R"(, "texture": "plain", "tile": 0)"),
         "surfaces[0].tile: expected a number from 0.0001 to 1000"},
        {surface(fine + R"(, "texture": "plain", "plane": 1)"), "surfaces[0].plane: expected true or false"},
        {surface(fine + R"(, "texture": "plain", "tint": [1, 1, -1])"),
         "surfaces[0].tint: expected three numbers from 0 to 100"},
        {surface(fine + R"(, "texture": "plain", "up": [0, 0, 2])"),
         "surfaces[0].up: expected a direction other than that of \"facing\""},
        {surface(
             R"("name": "w", "center": [0, 1, 0], "size": [1, -2], "facing": [0, 0, 1], "texture": "plain")"),
         "surfaces[0].size: expected two positive numbers"},
        {surface(
             R"("name": "w", "center": [0, 1, 0], "size": [1, 2, 3], "facing": [0, 0, 1], "texture": "plain")"),
         "surfaces[0].size: expected two positive numbers"},
        {surface(
             R"("name": "w", "center": [0, 1, 0], "size": [1, 2], "facing": [0, 0, 0], "texture": "plain")"),
         "surfaces[0].facing: expected a direction, not zero"},
        {surface(
             R"("name": "w", "center": [0, 1e9, 0], "size": [1, 2], "facing": [0, 0, 1], "texture": "plain")"),
         "surfaces[0].center: expected three coordinates of at most 1000 m"},
        {surface(
             R"("name": "w", "center": [0, 1e999, 0], "size": [1, 2], "facing": [0, 0, 1], "texture": "plain")"),
         "surfaces[0].center: expected three coordinates of at most 1000 m"},
        {surface(
             R"("name": "w", "center": [0, NaN, 0], "size": [1, 2], "facing": [0, 0, 1], "texture": "plain")"),
         "not JSON at line 1"},
        {surface(R"("name": "w", "center": "here", "size": [1, 2], "facing": [0, 0, 1], "texture": "plain")"),
         "surfaces[0].center: expected three coordinates of at most 1000 m"},
        {with(R"("boxes": [{)" + box + R"(, "size": [1, 1]}])"),
         "boxes[0].size: expected three positive numbers"},
        {with(R"("boxes": [{)" + box + R"(, "size": [1, 1, 1], "turn": 400}])"),
         "boxes[0].turn: expected a number from -360 to 360"},
        {with(R"("pictures": [{)" + place + R"(, "image": "poster"}])"), "pictures[0].width: missing"},
        {with(R"("pictures": [{)" + place + R"(, "image": "poster", "width": 1}, {)" + place +
              R"(, "image": "postcard", "width": 1}])"),
         "pictures[1].name: used twice"},
        {with(R"("codes": [{)" + place + R"(, "width": 1, "text": ")" + std::string(5000, 'x') + R"("}])"),
         "codes[0].text: does not fit into a code"},
        {with(R"("marks": [{"center": [0, 0, 0], "facing": [0, 1, 0], "radius": 0.05, "width": 0.1}])"),
         "marks[0].radius: expected less than half the width"},
        {with(R"("light": {"lumens": -1})"), "light.lumens: expected a number from 0 to 100000"},
        {with(R"("light": {"lamps": [{"center": [0, 2, 0], "facing": [0, -1, 0], "size": [1, 1]}]})"),
         "light.lamps[0].color: missing"},
        {with(R"("tracking": [{"from": 1, "to": 0.5, "reason": "initializing"}])"),
         "tracking[0].to: expected a number from 1 to 1000000"},
        {with(R"("tracking": [{"from": 0, "to": 1, "reason": "tired"}])"),
         "tracking[0].reason: expected initializing, excessiveMotion, insufficientFeatures or relocalizing"},
        {withCamera(R"({"period": 4, "path": []})"), "camera.path: expected at least one entry"},
        {withCamera(R"({"path": [)" + key + "]}"), "camera.period: missing"},
        {withCamera(R"({"period": 4, "path": [)" + key + "," + key + "]}"),
         "camera.path[1].time: expected a time after that of the entry before"},
        {withCamera(R"({"period": 4, "path": [{"time": 0, "position": [0, 1, 2]}]})"),
         "camera.path[0].lookAt: missing"},
        {withCamera(R"({"period": 4, "path": [{"time": 0, "position": [0, 1, 2], "lookAt": [0, 1, 2]}]})"),
         "camera.path[0].lookAt: expected a point other than the position"},
        {withCamera(
             R"({"period": 4, "path": [{"time": 0, "position": [0, 1, 2], "rotation": [0, 0, 0, 0]}]})"),
         "camera.path[0].rotation: expected a quaternion of length 1"},
        {withCamera(
             R"({"period": 4, "path": [{"time": 0, "position": [0, 1, 2], "rotation": [0, 0, null, 1]}]})"),
         "camera.path[0].rotation: expected a quaternion x, y, z, w"},
        {withCamera(R"({"period": 4, "fieldOfView": 180, "path": [)" + key + "]}"),
         "camera.fieldOfView: expected a number from 10 to 150"},
        {std::string(100, '[') + std::string(100, ']'), "not JSON at line 1"},
    };
    for (const Broken& broken : table)
        EXPECT_EQ(errorOf(broken.json), "rooms/living.json: " + broken.error) << broken.json.substr(0, 300);
    EXPECT_EQ(errorOf(with("")), "no error");
}

struct Folder {
    std::filesystem::path path;
    Folder() {
        std::string name = testing::TempDir() + "roomXXXXXX";
        path = mkdtemp(name.data());
    }
    ~Folder() { std::filesystem::remove_all(path); }
    void write(const std::string& name, const std::string& bytes) const {
        std::ofstream(path / name, std::ios::binary) << bytes;
    }
};

TEST(RoomFile, PicturesAreFoundBesideTheFile) {
    const Folder folder;
    const platform::Image red(8, 4, [] {
        std::vector<std::uint8_t> pixels;
        for (int i = 0; i < 32; ++i)
            pixels.insert(pixels.end(), {250, 0, 0, 255});
        return pixels;
    }());
    const auto jpeg = gtk::PixbufCodec().encodeJpeg(red, 1);
    folder.write("red.jpg", {jpeg.begin(), jpeg.end()});
    folder.write("broken.jpg", {jpeg.begin(), jpeg.begin() + 60});
    folder.write("empty.png", "");
    const auto load = [&](const std::string& image) {
        folder.write("room.json", with(R"("pictures": [{"name": "p", "image": ")" + image +
                                       R"(", "center": [0, 1, 0], "facing": [1, 0, 0], "width": 0.6}])"));
        return loadRoom(folder.path / "room.json");
    };
    const RoomResult room = load("red.jpg");
    ASSERT_EQ(room.index(), 0U) << std::get<1>(room);
    EXPECT_FLOAT_EQ(std::get<0>(room)->pictures[0].quad.height, 0.3F);
    EXPECT_EQ(std::get<0>(room)->picture("p").pixelWidth(), 8);
    EXPECT_FALSE(std::get<0>(room)->picture("q").isValid());

    const std::string prefix = (folder.path / "room.json").string() + ": pictures[0].image: ";
    EXPECT_EQ(std::get<1>(load("broken.jpg")), prefix + "\"broken.jpg\" is not a picture");
    EXPECT_EQ(std::get<1>(load("empty.png")), prefix + "\"empty.png\" is not a picture");
    EXPECT_EQ(std::get<1>(load("none.png")), prefix + "cannot read \"none.png\"");
    EXPECT_EQ(std::get<1>(loadRoom(folder.path / "no.json")),
              (folder.path / "no.json").string() + ": cannot be read");
    EXPECT_EQ(std::get<1>(loadRoom(folder.path)), folder.path.string() + ": cannot be read");
}

TEST(RoomFile, TheDefaultRoomHasWhatDemosCountOn) {
    const auto room = defaultRoom();
    EXPECT_TRUE(room->picture("poster").isValid());
    EXPECT_TRUE(room->picture("postcard").isValid());
    EXPECT_TRUE(room->picture("code").isValid());
    // The table: a plane 0.75 m high about the origin.
    const auto all = room->allSurfaces();
    const auto table = std::find_if(all.begin(), all.end(),
                                    [](const Surface& s) { return s.isPlane && s.name == "table top"; });
    ASSERT_NE(table, all.end());
    EXPECT_NEAR(table->quad.center.y, 0.75, 1e-5);
    EXPECT_NEAR(table->quad.width, 1.2, 1e-5);
    // It is always well in view, and the camera never leaves the room.
    for (double t = 0; t < 130; t += 0.5) {
        const Matrix pose = room->path.poseAt(t);
        const Vector3 seen = transformPoint(rigidInverse(pose), table->quad.center);
        EXPECT_LT(std::abs(seen.x / seen.z), 0.25) << t;
        EXPECT_LT(std::abs(seen.y / seen.z), 0.30) << t;
        EXPECT_NEAR(length(seen), 1.65, 0.2) << t;
        EXPECT_LT(std::abs(position(pose).x), 1.8F) << t;
    }
}

TEST(CameraPath, IsSmoothClosedAndAlwaysRigid) {
    const auto room = defaultRoom();
    constexpr double kStep = 1.0 / 120;
    Matrix before = room->path.poseAt(-kStep);
    Vector3 velocity;
    for (int i = 0; i < 120 * 70; ++i) {
        const Matrix pose = room->path.poseAt(i * kStep);
        const Vector3 now = 120 * (position(pose) - position(before));
        if (i > 0) {
            EXPECT_LT(length(now - velocity), 0.02) << "a jerk at " << i * kStep;
        }
        const Matrix turn = rigidInverse(before) * pose;
        EXPECT_LT(std::abs(turn[0].z) + std::abs(turn[1].z) + std::abs(turn[1].x), 0.01);
        const Matrix unit = rigidInverse(pose) * pose;
        EXPECT_NEAR(unit[0].x, 1, 1e-5);
        EXPECT_NEAR(unit[0].y, 0, 1e-5);
        velocity = now;
        before = pose;
    }
    // Without the wavering hand, the path closes.
    const CameraPath path({{0, {0, 1, 2}, {}},
                           {1, {2, 1, 0}, normalized(Quaternion{0, 1, 0, 1})},
                           {2, {0, 1, -2}, {0, 1, 0, 0}},
                           {3, {-2, 1, 0}, normalized(Quaternion{0, 1, 0, -1})}},
                          4, 0.5, {});
    const Matrix start = path.poseAt(-0.5), end = path.poseAt(3.5);
    EXPECT_NEAR(length(position(start) - Vector3{0, 1, 2}), 0, 1e-6);
    EXPECT_NEAR(length(position(start) - position(end)), 0, 1e-6);
    EXPECT_NEAR(path.poseAt(0.5)[2].x, 1, 1e-5);
}

TEST(Texture, EachNameMakesAPictureWithDetail) {
    for (const std::string name : {"plaster", "planks", "oak", "tiles", "carpet", "fabric", "checker", "rug",
                                   "books", "view", "poster", "postcard"}) {
        ASSERT_TRUE(isTextureName(name)) << name;
        const platform::Image image = textureImage(name);
        ASSERT_TRUE(image.isValid()) << name;
        double sum = 0, squares = 0;
        for (std::size_t i = 1; i < image.pixels().size(); i += 4) {
            sum += image.pixels()[i];
            squares += double(image.pixels()[i]) * image.pixels()[i];
        }
        const double count = double(image.pixels().size()) / 4, mean = sum / count;
        EXPECT_GT(squares / count - mean * mean, 4) << name;
    }
    EXPECT_FALSE(textureImage(std::string("velvet")).isValid());
}

} // namespace

} // namespace kestrin::session::test

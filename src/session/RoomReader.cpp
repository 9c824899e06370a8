#include "session/RoomReader.h"

#include "session/FileBytes.h"
#include "session/QrImage.h"
#include "session/Texture.h"
#include "session/TrackingReasonName.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace kestrin::session {

namespace {

constexpr std::size_t kMaximumImageBytes = 50'000'000;
constexpr int kMaximumImageSide = 4096;
constexpr double kLongest = 1e6; // seconds

constexpr float radians(double degrees) { return float(degrees * std::numbers::pi / 180); }

Quad readQuad(const Field& field, float width, float height) {
    const Vector3 out = field["facing"].direction();
    // What lies on a floor or table has its top away from a viewer who looks along -Z.
    Vector3 up = std::abs(out.y) > 0.9F ? Vector3{0, 0, -1} : Vector3{0, 1, 0};
    if (const auto given = field.find("up"))
        up = given->direction();
    if (length(cross(up, out)) < 0.01F)
        field["up"].fail("expected a direction other than that of \"facing\"");
    return Quad::facing(out, up, field["center"].point(), width, height);
}

Lamp readLamp(const Field& field) {
    field.allowKeys({"center", "facing", "up", "size", "color"});
    const auto size = field["size"].sizes(2);
    return {readQuad(field, float(size[0]), float(size[1])), field["color"].color()};
}

RoomLight readLight(const Field& field) {
    field.allowKeys({"ambient", "lamps", "lumens", "swing", "period"});
    RoomLight light;
    if (const auto ambient = field.find("ambient"))
        light.ambient = ambient->color();
    if (const auto lamps = field.find("lamps"))
        for (const Field& lamp : lamps->items(16))
            light.lamps.push_back(readLamp(lamp));
    if (const auto lumens = field.find("lumens"))
        light.lumens = lumens->number(0, 100'000);
    if (const auto swing = field.find("swing"))
        light.swing = swing->number(0, light.lumens);
    if (const auto period = field.find("period"))
        light.period = period->number(0.1, kLongest);
    return light;
}

CameraKey readKey(const Field& field) {
    field.allowKeys({"time", "position", "lookAt", "rotation"});
    CameraKey key{field["time"].number(0, kLongest), field["position"].point(), {}};
    if (const auto rotation = field.find("rotation")) {
        const auto q = rotation->numbers(4, -1.01, 1.01, "expected a quaternion x, y, z, w");
        const Quaternion turn{float(q[0]), float(q[1]), float(q[2]), float(q[3])};
        if (!(q[0] * q[0] + q[1] * q[1] + q[2] * q[2] + q[3] * q[3] > 0.5))
            rotation->fail("expected a quaternion of length 1");
        key.rotation = normalized(turn);
        return key;
    }
    const Field lookField = field["lookAt"];
    const Vector3 target = lookField.point();
    if (length(target - key.position) < 1e-3F)
        lookField.fail("expected a point other than the position");
    key.rotation = rotationOf(lookAt(key.position, target));
    return key;
}

Sway readSway(const Field& field) {
    field.allowKeys({"distance", "angle"});
    return {float(field["distance"].number(0, 1)), radians(field["angle"].number(0, 45))};
}

CameraPath readPath(const Field& field) {
    std::vector<CameraKey> keys;
    const Field list = field["path"];
    for (const Field& item : list.items(10'000)) {
        keys.push_back(readKey(item));
        if (keys.size() > 1 && !(keys.back().time > keys[keys.size() - 2].time))
            item["time"].fail("expected a time after that of the entry before");
    }
    if (keys.empty())
        list.fail("expected at least one entry");
    const double period = field["period"].number(0.1, kLongest);
    if (!(period > keys.back().time - keys.front().time))
        field["period"].fail("expected a time longer than the path");
    const auto start = field.find("start"), sway = field.find("sway");
    return {std::move(keys), period, start ? start->number(0, kLongest) : 0, sway ? readSway(*sway) : Sway{}};
}

platform::TrackingReason readReason(const Field& field) {
    const auto reason = reasonNamed(field.text());
    if (!reason || *reason == platform::TrackingReason::none)
        field.fail("expected initializing, excessiveMotion, insufficientFeatures or relocalizing");
    return *reason;
}

TrackingEvent readEvent(const Field& field) {
    field.allowKeys({"from", "to", "reason"});
    const double from = field["from"].number(0, kLongest);
    return {from, field["to"].number(from, kLongest), readReason(field["reason"])};
}

Mark readMark(const Field& field) {
    field.allowKeys({"center", "facing", "up", "radius", "width"});
    const float width = field["width"].meters(), radius = field["radius"].meters();
    if (!(2 * radius < width))
        field["radius"].fail("expected less than half the width");
    return {readQuad(field, width, width), radius};
}

} // namespace

RoomReader::RoomReader(std::filesystem::path folder, const platform::ImageCodec& codec)
    : m_folder(std::move(folder)), m_codec(codec) {}

Room RoomReader::read(const Field& document) {
    document.allowKeys({"surfaces", "boxes", "pictures", "codes", "marks", "light", "camera", "tracking"});
    const auto each = [&](std::string_view key, std::size_t most, auto&& read) {
        if (const auto list = document.find(key))
            for (const Field& item : list->items(most))
                read(item);
    };
    each("surfaces", 500, [this](const Field& item) { readSurface(item); });
    each("boxes", 500, [this](const Field& item) { readBox(item); });
    each("pictures", 100, [this](const Field& item) { readPicture(item); });
    each("codes", 100, [this](const Field& item) { readCode(item); });
    each("marks", 500, [this](const Field& item) { m_room.marks.push_back(readMark(item)); });
    each("tracking", 1000, [this](const Field& item) { m_room.tracking.push_back(readEvent(item)); });
    if (const auto light = document.find("light"))
        m_room.light = readLight(*light);

    const Field camera = document["camera"];
    camera.allowKeys({"fieldOfView", "path", "period", "start", "sway"});
    if (const auto angle = camera.find("fieldOfView"))
        m_room.fieldOfView = angle->number(10, 150);
    m_room.path = readPath(camera);
    return std::move(m_room);
}

void RoomReader::readSurface(const Field& field) {
    field.allowKeys({"name", "center", "size", "facing", "up", "texture", "tile", "tint", "glows", "plane"});
    const auto size = field["size"].sizes(2);
    const auto plane = field.find("plane");
    m_room.surfaces.push_back({field["name"].text(), readQuad(field, float(size[0]), float(size[1])),
                               readMaterial(field), plane && plane->flag()});
}

void RoomReader::readBox(const Field& field) {
    field.allowKeys({"name", "center", "size", "turn", "texture", "tile", "tint", "glows", "plane"});
    const auto size = field["size"].sizes(3);
    const auto turn = field.find("turn"), plane = field.find("plane");
    m_room.boxes.push_back({field["name"].text(),
                            field["center"].point(),
                            {float(size[0]), float(size[1]), float(size[2])},
                            turn ? radians(turn->number(-360, 360)) : 0,
                            readMaterial(field),
                            plane && plane->flag()});
}

void RoomReader::readPicture(const Field& field) {
    field.allowKeys({"name", "image", "center", "width", "facing", "up"});
    addPicture(field, readTexture(field["image"]));
}

void RoomReader::readCode(const Field& field) {
    field.allowKeys({"name", "text", "center", "width", "facing", "up"});
    const Field text = field["text"];
    const platform::Image image = makeQrImage(text.text());
    if (!image.isValid())
        text.fail("does not fit into a code");
    addPicture(field, image);
}

void RoomReader::addPicture(const Field& field, const Texture& texture) {
    const std::string name = field["name"].text();
    if (std::any_of(m_room.pictures.begin(), m_room.pictures.end(),
                    [&](const auto& p) { return p.name == name; }))
        field["name"].fail("used twice");
    const float width = field["width"].meters();
    const float height = float(width / aspectOf(texture));
    if (!(height < 1000))
        field["width"].fail("makes the picture higher than 1000 m");
    m_room.pictures.push_back({name, readQuad(field, width, height), texture});
}

Material RoomReader::readMaterial(const Field& field) {
    Material material;
    material.texture = readTexture(field["texture"]);
    if (const auto* name = std::get_if<std::string>(&material.texture))
        material.tile = naturalTile(*name);
    if (const auto tile = field.find("tile"))
        material.tile = tile->meters();
    if (const auto tint = field.find("tint"))
        material.tint = tint->color();
    if (const auto glows = field.find("glows"))
        material.glows = glows->flag();
    return material;
}

Texture RoomReader::readTexture(const Field& field) {
    const std::string name = field.text();
    if (isTextureName(name))
        return name;
    if (name.find('.') == std::string::npos)
        field.fail("there is no texture \"" + name + "\"");
    return readImage(field, name);
}

platform::Image RoomReader::readImage(const Field& field, const std::string& file) {
    platform::Image& image = m_images[file];
    if (image.isValid())
        return image;
    const auto bytes = readFile(m_folder / file, kMaximumImageBytes);
    if (!bytes)
        field.fail("cannot read \"" + file + "\"");
    image = m_codec.decode({reinterpret_cast<const std::uint8_t*>(bytes->data()), bytes->size()});
    if (!image.isValid())
        field.fail("\"" + file + "\" is not a picture");
    if (image.pixelWidth() > kMaximumImageSide || image.pixelHeight() > kMaximumImageSide)
        field.fail("\"" + file + "\" has more than " + std::to_string(kMaximumImageSide) + " pixels a side");
    return image;
}

} // namespace kestrin::session

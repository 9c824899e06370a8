#include "services/util/KestrinUtil.h"

#include "platform/Platform.h"
#include "services/util/Base64.h"
#include "services/util/Format.h"
#include "services/util/Json.h"
#include "services/util/Numbers.h"

#include <boost/json.hpp>

#include <algorithm>
#include <utility>
#include <vector>

namespace kestrin {

namespace json = boost::json;

namespace {

// The room for a message's bytes is kept for the next one: to use memory for the first time costs more than
// to decode into it.
constexpr std::size_t kMostRoomKept = 16U << 20U;

} // namespace

std::string KestrinUtil::dictToJSON(const json::object* map) {
    return (map ? serializeJson(*map) : std::nullopt).value_or("{}");
}

std::string KestrinUtil::arrToJSON(const json::array* list) {
    return (list ? serializeJson(*list) : std::nullopt).value_or("[]");
}

std::string KestrinUtil::dictToJSON64(const json::object* map) { return base64Encode(dictToJSON(map)); }

std::string KestrinUtil::arrToJSON64(const json::array* list) { return base64Encode(arrToJSON(list)); }

std::optional<json::value> KestrinUtil::jsonToDict(std::optional<std::string_view> text) {
    return text ? parseJson(*text) : json::value(json::object_kind);
}

std::optional<json::value> KestrinUtil::jsonToArray(std::optional<std::string_view> text) {
    return text ? parseJson(*text) : json::value(json::array_kind);
}

std::optional<json::value> KestrinUtil::json64ToDict(std::optional<std::string_view> text) {
    if (!text)
        return json::value(json::object_kind);
    thread_local std::vector<char> room;
    room.resize(std::max(room.size(), base64DecodingRoom(text->size())));
    const auto size = base64Decode(*text, room.data());
    auto value = size ? parseJsonInOnePiece({room.data(), *size}) : std::nullopt;
    if (room.size() > kMostRoomKept)
        room = {};
    return value;
}

json::value KestrinUtil::loadJSONBundled(const std::string& name) {
    const auto resource = platform::platform().storage().bundleResource(name, "json");
    if (!resource)
        log("KestrinUtil::loadJSONBundled::No Bundle Exists, Sending Default Data.");
    auto parsed = resource ? parseJson(*resource) : std::nullopt;
    return parsed ? std::move(*parsed) : json::value(json::object_kind);
}

std::string KestrinUtil::getDeviceType() {
    const platform::Screen screen = platform::platform().application().mainScreen();
    const double height = std::max(screen.size.width, screen.size.height) * screen.nativeScale;
    switch (saturatingCast<int>(height)) {
    case 960:
        return "iphone4";
    case 1136:
        return "iphone5";
    case 1334:
        return "iphone6";
    case 1920:
    case 2208:
        return "iphone6plus";
    default:
        return "unknown";
    }
}

bool KestrinUtil::isDevice(std::string_view name) { return getDeviceType() == name; }

void KestrinUtil::showAlert(const std::string& message, const std::string& title,
                            const std::string& exitButton) {
    platform::platform().dispatch().mainAsync([message, title, exitButton] {
        platform::platform().application().showAlert(title, message, exitButton);
    });
}

void KestrinUtil::errorNotify(const std::string& message) { showAlert(message, "Error", "OK"); }

} // namespace kestrin

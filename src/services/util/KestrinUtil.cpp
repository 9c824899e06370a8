#include "services/util/KestrinUtil.h"

#include "platform/Platform.h"
#include "services/util/Base64.h"
#include "services/util/Format.h"
#include "services/util/Json.h"
#include "services/util/Numbers.h"
#include "services/util/OverrideNSURLSessionDelegate.h"

#include <boost/json.hpp>

#include <algorithm>
#include <utility>

namespace kestrin {

namespace json = boost::json;

namespace {

platform::HttpRequest getRequest(const std::string& url) {
    platform::HttpRequest request;
    request.url = url;
    return request;
}

std::optional<std::string> fetch(const std::string& url) {
    const auto delegate = OverrideNSURLSessionDelegate::getInstance();
    auto response = platform::platform().http().fetch(getRequest(url), delegate.get());
    return response ? std::optional(std::move(response->body)) : std::nullopt;
}

std::optional<json::value> parseAnswer(const std::optional<platform::HttpResponse>& response) {
    auto answer = response ? parseJson(response->body) : std::nullopt;
    const bool isContainer = answer && answer->is_structured();
    return isContainer ? std::move(answer) : std::nullopt;
}

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
    const auto bytes = base64Decode(*text);
    return bytes ? parseJson(*bytes) : std::nullopt;
}

void KestrinUtil::sendAsyncRequest(const std::string& url, JsonCallback callback) {
    auto delegate = OverrideNSURLSessionDelegate::getInstance();
    auto* const asked = delegate.get();
    platform::platform().http().send(getRequest(url), asked,
                                     [delegate = std::move(delegate), callback = std::move(callback)](
                                         const auto& response) { callback(parseAnswer(response)); });
}

std::optional<json::value> KestrinUtil::getJSONFromURL(const std::string& url) {
    const auto body = fetch(url);
    return body ? parseJson(*body) : std::nullopt;
}

platform::Image KestrinUtil::getImageFromURL(const std::string& url) {
    const auto body = fetch(url);
    if (!body)
        return {};
    return platform::platform().images().decode(
        {reinterpret_cast<const std::uint8_t*>(body->data()), body->size()});
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

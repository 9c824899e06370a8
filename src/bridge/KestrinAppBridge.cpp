#include "bridge/KestrinAppBridge.h"

#include "bridge/AppJSONStack.h"
#include "services/util/Format.h"
#include "services/util/Json.h"
#include "services/util/KestrinUtil.h"
#include "services/util/MainThread.h"
#include "services/util/PercentEncoding.h"

#include <boost/json.hpp>

#include <utility>

namespace kestrin {

namespace json = boost::json;

namespace {

constexpr const char* kScene = "scene";
constexpr const char* kPage = "page";
constexpr const char* kApplication = "application";

std::vector<KestrinID> idsIn(const json::value& answer, const std::string& type) {
    const json::value* const data = findMember(&answer, {"data"});
    const json::array* const list = data ? data->if_array() : nullptr;
    std::vector<KestrinID> ids;
    if (!list)
        return ids;
    for (const json::value& element : *list)
        if (const json::value* const id = findMember(&element, {"id"}))
            ids.push_back(KestrinID::initWith(type, textOrJsonOf(id)));
    return ids;
}

} // namespace

std::shared_ptr<KestrinAppBridge> KestrinAppBridge::initWith(std::shared_ptr<AppJSONStack> jsonStack,
                                                             const KestrinSettings& settings) {
    return std::shared_ptr<KestrinAppBridge>(new KestrinAppBridge(std::move(jsonStack), settings));
}

KestrinAppBridge::KestrinAppBridge(std::shared_ptr<AppJSONStack> jsonStack, const KestrinSettings& settings)
    : _webview(std::move(jsonStack)), _settings(settings) {}

void KestrinAppBridge::openScene(const Text& id) { openArbitrary(KestrinID::initWith(kScene, id)); }

void KestrinAppBridge::openPage(const Text& id) { openArbitrary(KestrinID::initWith(kPage, id)); }

void KestrinAppBridge::openApplication(const Text& id) {
    openArbitrary(KestrinID::initWith(kApplication, id));
}

void KestrinAppBridge::openArbitrary(const std::optional<KestrinID>& id) {
    assertMain();
    if (!id || !id->isValid())
        return;
    log("KestrinAppBridge - Opening Arbitrary Action Type = %@ UUID = %@", id->objectType(), id->uuid());
    if (!_webview)
        return;
    const auto stack = _webview->push("Trigger");
    _webview->pushVar("type", json::value(*id->objectType()), stack);
    _webview->pushVar("id", json::value(*id->uuid()), stack);
    _webview->deploy(stack, true);
}

void KestrinAppBridge::openSceneByName(const Text& title) { findSceneByName(title, openFirst()); }

void KestrinAppBridge::openPageByName(const Text& title) { findPageByName(title, openFirst()); }

KestrinAppBridge::FindCallback KestrinAppBridge::openFirst() {
    return [self = shared_from_this()](const std::vector<KestrinID>& found) {
        if (!found.empty())
            self->open(found.front());
    };
}

void KestrinAppBridge::findSceneByName(const Text& title, FindCallback callback) {
    findArbiByName(title, kScene, std::move(callback));
}

void KestrinAppBridge::findPageByName(const Text& title, FindCallback callback) {
    findArbiByName(title, kPage, std::move(callback));
}

void KestrinAppBridge::findArbiByName(const Text& title, const std::string& type, FindCallback callback) {
    const std::string address =
        percentEncodeForHost(format("%@/api/v2/application/%@/%@?filter[title]=%@", _settings.getHostUrl(),
                                    _settings.getApplicationID(), type, title));
    log("KestrinAppBridge - Getting Object List from %@", address);
    KestrinUtil::sendAsyncRequest(
        address, [type, callback = std::move(callback)](const std::optional<json::value>& answer) {
            if (!answer)
                log("KestrinAppBridge - Unable to download");
            callback(answer ? idsIn(*answer, type) : std::vector<KestrinID>());
        });
}

} // namespace kestrin

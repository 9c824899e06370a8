#include "core/config/KestrinFeatureFlags.h"

#include "platform/Platform.h"
#include "services/util/Format.h"
#include "services/util/Json.h"
#include "services/util/KestrinUtil.h"
#include "services/util/MainThread.h"
#include "services/util/Singleton.h"

#include <boost/json.hpp>

#include <algorithm>
#include <utility>

namespace kestrin {

namespace json = boost::json;

namespace {

void appendTexts(std::vector<std::string>& flags, const json::value& list) {
    const json::array* items = list.if_array();
    if (!items)
        return;
    for (const json::value& item : *items)
        if (auto flag = textOf(&item))
            flags.push_back(std::move(*flag));
}

} // namespace

std::shared_ptr<KestrinFeatureFlags> KestrinFeatureFlags::getInstance() {
    return singleton<KestrinFeatureFlags>();
}

KestrinFeatureFlags::KestrinFeatureFlags() {
    const json::value packaged = KestrinUtil::loadJSONBundled("KestrinCache/Features/feature_flags");
    m_flags.update([&](auto& flags) { appendTexts(flags, packaged); });
}

bool KestrinFeatureFlags::containsFlag(std::string_view flag) const {
    const auto flags = m_flags.read();
    return std::ranges::find(*flags, flag) != flags->end();
}

void KestrinFeatureFlags::put(std::string flag) {
    m_flags.update([&](auto& flags) { flags.push_back(std::move(flag)); });
}

void KestrinFeatureFlags::clear() { m_flags.write({}); }

std::string KestrinFeatureFlags::toJson() const {
    const auto flags = m_flags.read();
    const json::array list(flags->begin(), flags->end());
    return KestrinUtil::arrToJSON64(&list);
}

void KestrinFeatureFlags::print() const {
    log("KestrinFeatureFlags - Synced feature list, these values can be changed via the CMS.");
    const auto flags = m_flags.read();
    for (const std::string& flag : *flags)
        log("%@", flag);
}

void KestrinFeatureFlags::sync(const std::string& serverUrl,
                               const std::optional<std::string>& applicationID) {
    assertMain();
    m_synced = false;
    clear();
    const std::string address =
        format("%@/api/v2/application/%@?prune[relationships]=file,scene,page,collection,applicationbuild",
               serverUrl, applicationID);
    log("KestrinFeatureFlags - Sync Feature List from %@", address);
    KestrinUtil::sendAsyncRequest(address, [weak = weak_from_this()](const auto& answer) {
        if (const auto self = weak.lock())
            self->onAnswer(answer);
    });
}

void KestrinFeatureFlags::onAnswer(const std::optional<json::value>& answer) {
    if (!answer) {
        m_synced = true;
        log("KestrinFeatureFlags - Sync failed, no data.");
        return;
    }
    const auto text = textOf(findMember(&*answer, {"data", "attributes", "feature_flags"}));
    if (const auto list = KestrinUtil::jsonToArray(text))
        m_flags.update([&](auto& flags) { appendTexts(flags, *list); });
    print();
    m_synced = true;
    if (m_pendingCallback)
        syncCallback(m_pendingCallback);
}

void KestrinFeatureFlags::syncCallback(SyncCallback callback) {
    const bool diverted = divertToMain([weak = weak_from_this(), callback] {
        log("KestrinFeatureFlags - syncCallback - Diverting call to main thread. Expect delayed results.");
        if (const auto self = weak.lock())
            self->syncCallback(callback);
    });
    if (diverted || !callback)
        return;
    if (!m_synced) {
        m_pendingCallback = std::move(callback);
        return;
    }
    log("KestrinFeatureFlags - Sync complete, performing callback.");
    m_pendingCallback = nullptr;
    callback();
}

std::string KestrinFeatureFlags::getAppDetailBase64() const {
    const auto text = platform::platform().storage().information("APP_DETAIL");
    const auto packaged = KestrinUtil::json64ToDict(text);
    const auto packagedOr = [&](std::string_view key, const char* otherwise) {
        const json::value* found = packaged ? findMember(&*packaged, {key}) : nullptr;
        return found ? *found : json::value(otherwise);
    };
    const platform::Device device = platform::platform().device();
    json::object detail{{"version", packagedOr("version", "0.0.0")},
                        {"build", packagedOr("build", "0")},
                        {"bundle_id", packagedOr("bundle_id", "unknown")},
                        {"app_type", packagedOr("app_type", "integration")},
                        {"platform", "ios"},
                        {"device_id", device.identifierForVendor},
                        {"device_type", device.localizedModel}};
    if (containsFlag("local"))
        detail["app_type"] = "local";
    return KestrinUtil::dictToJSON64(&detail);
}

} // namespace kestrin

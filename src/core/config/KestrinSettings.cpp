#include "core/config/KestrinSettings.h"

#include "core/config/Deployment.h"
#include "services/util/Json.h"
#include "services/util/KestrinUtil.h"
#include "services/util/Singleton.h"
#include "services/util/Snapshot.h"
#include "services/util/Url.h"

#include <boost/json.hpp>

namespace kestrin {

namespace json = boost::json;

namespace {

constexpr std::string_view kSecure = "https://";
constexpr std::string_view kInsecure = "http://";

struct ExternalIntent {
    Snapshot<std::shared_ptr<const json::value>> value;
};

} // namespace

InvalidSettings::InvalidSettings() : std::runtime_error(std::string(kName) + " - " + reason()) {}

std::string InvalidSettings::reason() {
    return std::string("Settings Created with Null URL. Build may be corrupt. Contact ") +
           Deployment::kSupportContact + " for more Info.";
}

KestrinSettings::KestrinSettings() : mUrl(std::string(kSecure) + Deployment::kWebHost) { reformatUrl(); }

KestrinSettings KestrinSettings::initWithKeyString(std::optional<std::string_view> keyString) {
    const auto decoded = KestrinUtil::json64ToDict(keyString);
    const auto read = [&](std::string_view key) { return decoded ? findMember(&*decoded, {key}) : nullptr; };
    const auto url = textOf(read("baseUrl"));
    if (!url)
        throw InvalidSettings();
    KestrinSettings settings;
    settings.mAutoStart = isTrue(read("autoStart"));
    settings.mUrl = *url;
    settings.mTemplateDestroy = isTrue(read("destroyTemplate"));
    settings.mTemplateBlocked = isTrue(read("blockTemplate"));
    settings.mDebugEnabled = isTrue(read("debugEnabled"));
    settings.mCommand = textOf(read("baseCommand"));
    settings.reformatUrl();
    return settings;
}

KestrinSettings KestrinSettings::initWithSettings(const KestrinSettings* settings) {
    KestrinSettings copy = settings ? *settings : KestrinSettings();
    copy.reformatUrl();
    return copy;
}

KestrinSettings KestrinSettings::initWithKeyInt(int) {
    KestrinSettings settings;
    settings.mDebugEnabled = false;
    return settings;
}

std::string KestrinSettings::getHostUrl() const {
    return std::string(kSecure).append(urlHost(mUrl).value_or(std::string_view()));
}

std::optional<std::string> KestrinSettings::getApplicationID() const {
    const auto commands = KestrinUtil::json64ToDict(mCommand);
    const json::array* list = commands ? commands->if_array() : nullptr;
    if (!list || list->empty())
        return std::nullopt;
    return textOrJsonOf(findMember(&list->front(), {"data", "appID"}));
}

void KestrinSettings::reformatUrl() {
    if (mUrl.starts_with(kSecure))
        return;
    if (!mUrl.starts_with(kInsecure)) {
        mUrl.insert(0, kSecure);
        return;
    }
    for (auto at = mUrl.find(kInsecure); at != std::string::npos; at = mUrl.find(kInsecure, at))
        mUrl.replace(at, kInsecure.size(), kSecure);
}

std::shared_ptr<const json::value> KestrinSettings::externalIntent() {
    return *singleton<ExternalIntent>()->value.read();
}

void KestrinSettings::setExternalIntent(std::shared_ptr<const json::value> intent) {
    singleton<ExternalIntent>()->value.write(std::move(intent));
}

} // namespace kestrin

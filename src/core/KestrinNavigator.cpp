#include "core/KestrinNavigator.h"

#include "bridge/KestrinWebView.h"
#include "core/config/Deployment.h"
#include "core/config/KestrinSettings.h"
#include "services/util/Format.h"
#include "services/util/Json.h"
#include "services/util/KestrinUtil.h"
#include "services/util/MainThread.h"
#include "services/util/PercentEncoding.h"
#include "services/util/Url.h"

#include <boost/json/value.hpp>

#include <utility>

namespace kestrin {

namespace {

std::optional<std::string> applicationIn(std::string_view link) {
    const auto items = queryItems(link);
    auto application = KestrinNavigator::valueForKey("kestrin_app", items);
    return application ? application : KestrinNavigator::valueForKey("app", items);
}

void logMissing(const char* operation) {
    log("KestrinNavigator - %@ - Context is null, need to reload.", operation);
}

bool isMakersHost(std::string_view link) {
    const auto host = percentDecode(urlHost(link).value_or(std::string_view()));
    return host == Deployment::kWebDomain || host == Deployment::kWebHost;
}

} // namespace

std::shared_ptr<KestrinNavigator> KestrinNavigator::initWithContext(std::shared_ptr<KestrinWebView> webView) {
    return std::shared_ptr<KestrinNavigator>(new KestrinNavigator(std::move(webView)));
}

void KestrinNavigator::addToParentView(const std::shared_ptr<platform::View>& parent) {
    if (context)
        context->addToParentView(parent);
}

void KestrinNavigator::removeFromParentView() {
    if (context)
        context->removeFromParentView();
}

void KestrinNavigator::setBackgroundColor(const platform::Color& color) {
    if (context)
        context->setBackgroundColor(color);
}

void KestrinNavigator::goBack() { drive("goBack()", &KestrinWebView::goBack); }

void KestrinNavigator::goForward() { drive("goForward()", &KestrinWebView::goForward); }

void KestrinNavigator::clearCache() { drive("clearCache()", &KestrinWebView::clearCache); }

void KestrinNavigator::drive(const char* operation, void (KestrinWebView::*step)()) {
    if (divertToMain([self = shared_from_this(), operation, step] { self->drive(operation, step); }))
        return;
    if (context)
        (context.get()->*step)();
    else
        logMissing(operation);
}

void KestrinNavigator::goTo(const std::optional<std::string>& url) {
    if (divertToMain([self = shared_from_this(), url] { self->goTo(url); }))
        return;
    lastURL.write(url);
    if (context)
        context->loadUrl(url, false);
    else
        logMissing("goTo()");
}

void KestrinNavigator::reload() { goTo(getLastURL()); }

bool KestrinNavigator::checkAppURL(std::string_view link) {
    return isMakersHost(link) && applicationIn(link);
}

void KestrinNavigator::getSettingsFrom(std::string_view link, SettingsCallback callback) {
    const std::string address =
        format("%@/api/v2/application/%@/appkey", std::string("https://") + Deployment::kApplicationHost,
               applicationIn(link));
    log("eval = %@", address);
    KestrinUtil::sendAsyncRequest(
        address, [callback = std::move(callback)](const std::optional<boost::json::value>& answer) {
            const auto key = textOf(findMember(answer ? &*answer : nullptr, {"data", "appkey"}));
            callback(key ? std::optional(KestrinSettings::initWithKeyString(*key)) : std::nullopt);
        });
}

std::optional<std::string> KestrinNavigator::valueForKey(std::string_view key,
                                                         const std::optional<std::vector<QueryItem>>& items) {
    if (!items)
        return std::nullopt;
    for (const auto& [name, value] : *items)
        if (name == key)
            return value;
    return std::nullopt;
}

} // namespace kestrin

#include "bridge/AppJSONStack.h"

#include "bridge/KestrinWebView.h"
#include "services/util/Format.h"
#include "services/util/KestrinUtil.h"
#include "services/util/MainThread.h"

#include <boost/json/array.hpp>

#include <utility>

namespace kestrin {

std::shared_ptr<AppJSONStack> AppJSONStack::initWithView(std::shared_ptr<KestrinWebView> view) {
    return std::shared_ptr<AppJSONStack>(new AppJSONStack(std::move(view)));
}

AppJSONStack::StackKey AppJSONStack::push(const std::string& name) {
    assertMain();
    auto& idle = idMaps[name];
    if (idle.empty())
        return AppEventStack::initWithName(name);
    auto stack = std::move(idle.back());
    idle.pop_back();
    return stack;
}

void AppJSONStack::pushVar(std::string_view key, boost::json::value jsonValue, const StackKey& stackKey) {
    if (stackKey)
        stackKey->put(key, std::move(jsonValue));
}

void AppJSONStack::deploy(const StackKey& stackKey, bool sendNow) {
    assertMain();
    if (!stackKey)
        return;
    MainJson event(stackKey, &stackKey->getMainStack());
    if (!sendNow || !webView) {
        nonCriticalMainJson.push_back(std::move(event));
        stacks.push_back(stackKey);
        return;
    }
    criticalMainJson.push_back(std::move(event));
    send(encode(criticalMainJson));
    criticalMainJson.clear();
    recycle(stackKey);
}

void AppJSONStack::deployDirect(const std::optional<std::string>& text) {
    if (text)
        send(*text);
}

std::optional<std::string> AppJSONStack::updateDirect() {
    assertMain();
    if (nonCriticalMainJson.empty())
        return std::nullopt;
    std::string text = encode(nonCriticalMainJson);
    nonCriticalMainJson.clear();
    for (const auto& stack : std::exchange(stacks, {}))
        recycle(stack);
    return text;
}

void AppJSONStack::update() {
    if (!webView)
        return;
    if (const auto text = updateDirect())
        send(*text);
}

std::string AppJSONStack::encode(const std::vector<MainJson>& events) {
    boost::json::array list;
    for (const MainJson& event : events)
        list.emplace_back(*event);
    return KestrinUtil::arrToJSON64(&list);
}

void AppJSONStack::send(const std::string& text) {
    if (webView)
        webView->eval(format("window.kestrinSDKEventHandler('%@');", text));
}

void AppJSONStack::recycle(const StackKey& stack) {
    stack->clear();
    const auto pool = idMaps.find(stack->getName());
    if (pool != idMaps.end())
        pool->second.push_back(stack);
}

} // namespace kestrin

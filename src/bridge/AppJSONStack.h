#pragma once

#include "bridge/AppEventStack.h"

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kestrin {

class KestrinWebView;

/// Sends named events to the page, at once or in batches, and reuses their objects by name. Thread: main.
class AppJSONStack {
  public:
    using StackKey = std::shared_ptr<AppEventStack>;

    /// Without a web view, events wait for ever.
    static std::shared_ptr<AppJSONStack> initWithView(std::shared_ptr<KestrinWebView> view);

    /// An empty event of that name, to be filled and deployed once.
    StackKey push(const std::string& name);
    void pushVar(std::string_view key, boost::json::value jsonValue, const StackKey& stackKey);
    /// Sends the event alone and at once, or keeps it for the next `update`.
    void deploy(const StackKey& stackKey, bool sendNow);
    /// Sends base64 text of a list of events as it is.
    void deployDirect(const std::optional<std::string>& text);
    /// Takes what waits, as base64 text of a list; none when nothing waits.
    std::optional<std::string> updateDirect();
    /// Sends what waits.
    void update();

  private:
    /// A stack's main map, which it keeps alive: what is put before the sending is sent.
    using MainJson = std::shared_ptr<const boost::json::object>;

    explicit AppJSONStack(std::shared_ptr<KestrinWebView> view) : webView(std::move(view)) {}
    static std::string encode(const std::vector<MainJson>& events);
    void send(const std::string& text);
    void recycle(const StackKey& stack);

    const std::shared_ptr<KestrinWebView> webView;
    std::vector<StackKey> stacks;                        ///< deployed and not sent yet
    std::map<std::string, std::vector<StackKey>> idMaps; ///< idle, by name
    std::vector<MainJson> criticalMainJson;              ///< being sent
    std::vector<MainJson> nonCriticalMainJson;           ///< wait for the next `update`
};

} // namespace kestrin

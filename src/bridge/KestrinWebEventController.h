#pragma once

#include "bridge/SelectorList.h"
#include "bridge/WebEventDelegate.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <vector>

namespace kestrin {

class KestrinWebView;

/// Runs the handlers and callbacks registered for each web event. Thread: main, unless said otherwise.
class KestrinWebEventController : public WebEventDelegate,
                                  public std::enable_shared_from_this<KestrinWebEventController> {
  public:
    using Callback = std::function<void(const boost::json::object& data)>;

    /// Becomes the web view's event delegate.
    static std::shared_ptr<KestrinWebEventController> initWithMain(std::shared_ptr<KestrinWebView> webView);
    ~KestrinWebEventController() override;

    /// Runs `selector` of `target`, while it lives, at every such event; twice when registered twice. Does
    /// nothing for a number outside the table or after `destroy`. Handlers run before callbacks.
    template <class Target>
    void registerForEvent(std::int32_t event, void (Target::*selector)(const boost::json::object&),
                          const std::shared_ptr<Target>& target) {
        addSelector(event, SelectorList::initWithData(
                               [selector](void* alive, const boost::json::object& data) {
                                   (static_cast<Target*>(alive)->*selector)(data);
                               },
                               std::weak_ptr<void>(target)));
    }
    void registerForEventCallback(std::int32_t event, Callback callback);

    /// Delivers later, on main, also when called there. Thread: any.
    void onWebEvent(std::ptrdiff_t event, EventData data) override;

    /// Lets go of the web view's delegate, if it is still this, and of every registration.
    void destroy();

  private:
    using Selectors = std::vector<std::shared_ptr<const SelectorList>>;

    explicit KestrinWebEventController(std::shared_ptr<KestrinWebView> view);
    void addSelector(std::int32_t event, std::shared_ptr<const SelectorList> record);
    void deliver(std::ptrdiff_t event, const boost::json::object& data);
    void runSelectors(std::ptrdiff_t event, const boost::json::object& data);
    void runCallbacks(std::ptrdiff_t event, const boost::json::object& data);

    const std::shared_ptr<KestrinWebView> webView;
    std::map<std::ptrdiff_t, Selectors> selectors;
    std::map<std::ptrdiff_t, std::vector<Callback>> callbacks;
};

} // namespace kestrin

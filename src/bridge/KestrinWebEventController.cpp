#include "bridge/KestrinWebEventController.h"

#include "bridge/KestrinWebEvent.h"
#include "bridge/KestrinWebView.h"
#include "platform/Platform.h"
#include "services/util/Format.h"
#include "services/util/MainThread.h"

#include <boost/json/object.hpp>

#include <algorithm>
#include <utility>

namespace kestrin {

namespace json = boost::json;

std::shared_ptr<KestrinWebEventController>
KestrinWebEventController::initWithMain(std::shared_ptr<KestrinWebView> webView) {
    const std::shared_ptr<KestrinWebEventController> made(new KestrinWebEventController(std::move(webView)));
    if (made->webView)
        made->webView->registerEventDelegate(made);
    return made;
}

KestrinWebEventController::KestrinWebEventController(std::shared_ptr<KestrinWebView> view)
    : webView(std::move(view)) {
    for (std::ptrdiff_t event = 0; event < KestrinWebEvent::getEventCount(); ++event) {
        selectors[event];
        callbacks[event];
    }
}

KestrinWebEventController::~KestrinWebEventController() = default;

void KestrinWebEventController::addSelector(std::int32_t event, std::shared_ptr<const SelectorList> record) {
    assertMain();
    const auto found = selectors.find(event);
    if (found != selectors.end())
        found->second.push_back(std::move(record));
}

void KestrinWebEventController::registerForEventCallback(std::int32_t event, Callback callback) {
    assertMain();
    const auto found = callbacks.find(event);
    if (found != callbacks.end())
        found->second.push_back(std::move(callback));
}

void KestrinWebEventController::onWebEvent(std::ptrdiff_t event, EventData data) {
    platform::platform().dispatch().mainAsync([self = shared_from_this(), event, data = std::move(data)] {
        self->deliver(event, data ? *data : json::object());
    });
}

// A handler may register more or destroy this controller: both walks go over a copy, and the callbacks are
// looked up when the handlers are done.
void KestrinWebEventController::deliver(std::ptrdiff_t event, const json::object& data) {
    runSelectors(event, data);
    runCallbacks(event, data);
}

void KestrinWebEventController::runSelectors(std::ptrdiff_t event, const json::object& data) {
    const auto found = selectors.find(event);
    if (found == selectors.end())
        return;
    Selectors gone;
    for (const auto& record : Selectors(found->second)) {
        if (record->execute(data))
            continue;
        log("WARNING::KestrinWebEventExecutor::onWebEvent() - Selector Class is NULL. It may have been "
            "deallocated externally. Cannot Send Callback. Removing From Future Iterations.");
        gone.push_back(record);
    }
    const auto now = selectors.find(event);
    if (now != selectors.end())
        std::erase_if(now->second,
                      [&](const auto& record) { return std::ranges::find(gone, record) != gone.end(); });
}

void KestrinWebEventController::runCallbacks(std::ptrdiff_t event, const json::object& data) {
    const auto found = callbacks.find(event);
    if (found == callbacks.end())
        return;
    for (const Callback& callback : std::vector<Callback>(found->second))
        if (callback)
            callback(data);
}

void KestrinWebEventController::destroy() {
    assertMain();
    if (webView && webView->delegate().get() == this)
        webView->registerEventDelegate({});
    selectors.clear();
    callbacks.clear();
}

} // namespace kestrin

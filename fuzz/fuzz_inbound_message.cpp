// What a page can post: any bytes, to the handler of the web view host, through the dispatcher to a callback.
#include "bridge/KestrinWebEvent.h"
#include "bridge/KestrinWebEventController.h"
#include "bridge/KestrinWebView.h"
#include "services/util/Base64.h"
#include "services/util/Json.h"
#include "support/FakePlatform.h"

#include <boost/json/object.hpp>

#include <string_view>

namespace {

using namespace kestrin;

struct Page {
    std::shared_ptr<test::FakePlatform> system = std::make_shared<test::FakePlatform>();
    std::shared_ptr<KestrinWebView> host;
    std::shared_ptr<KestrinWebEventController> events;

    Page() {
        platform::installPlatform(system);
        host = std::make_shared<KestrinWebView>();
        host->prepare(nullptr);
        events = KestrinWebEventController::initWithMain(host);
        for (int event = 0; event < KestrinWebEvent::getEventCount(); ++event)
            events->registerForEventCallback(event, [](const boost::json::object& data) {
                if (!textOf(findMember(data, {"eventName"})))
                    __builtin_trap();
            });
    }

    void post(std::string_view body) {
        system->webToolkit.newest->post("kestrin", body);
        system->queues.runMain();
        system->logSink.take();
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static auto& page = *new Page;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    page.post(text);
    page.post(base64Encode(text)); // so that the bytes reach the JSON parser as well
    return 0;
}

#include "bridge/KestrinWebEventController.h"
#include "WebViewTest.h"

#include <boost/json.hpp>
#include <gmock/gmock.h>

using namespace kestrin;
using boost::json::object;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr const char* kWarning =
    "WARNING::KestrinWebEventExecutor::onWebEvent() - Selector Class is NULL. It may have been deallocated "
    "externally. Cannot Send Callback. Removing From Future Iterations.";
constexpr std::int32_t kShare = 21;

struct Target {
    std::vector<std::string>& told;
    std::string name;
    void handle(const object&) { told.push_back(name); }
};

struct KestrinWebEventControllerTest : test::WebViewTest {
    KestrinWebEventController::Callback tell(const std::string& name) {
        return [this, name](const object&) { told.push_back(name); };
    }
    /// Who was told of the event.
    std::vector<std::string> report(std::ptrdiff_t event) {
        controller->onWebEvent(event, nullptr);
        EXPECT_THAT(told, IsEmpty());
        runMain();
        return std::exchange(told, {});
    }

    std::vector<std::string> told;
    std::shared_ptr<Target> first{new Target{told, "first"}}, second{new Target{told, "second"}};
    std::shared_ptr<KestrinWebEventController> controller = KestrinWebEventController::initWithMain(webView);
};

} // namespace

TEST_F(KestrinWebEventControllerTest, HandlersRunBeforeCallbacksEachInOrderWhileTheyLive) {
    controller->registerForEventCallback(kShare, tell("callback"));
    controller->registerForEvent(kShare, &Target::handle, second);
    controller->registerForEvent(kShare, &Target::handle, first);
    controller->registerForEvent(kShare, &Target::handle, second);
    controller->registerForEventCallback(0, tell("another event"));
    EXPECT_THAT(report(kShare), ElementsAre("second", "first", "second", "callback"));
    first.reset();
    for (int i = 0; i < 2; ++i)
        EXPECT_THAT(report(kShare), ElementsAre("second", "second", "callback"));
    EXPECT_THAT(takeLog(), ElementsAre(kWarning));
}

TEST_F(KestrinWebEventControllerTest, ACallbackMayRegisterAndDestroy) {
    controller->registerForEventCallback(kShare, [this](const object&) {
        controller->registerForEventCallback(kShare, tell("registered"));
        controller->registerForEvent(kShare, &Target::handle, first);
    });
    EXPECT_THAT(report(kShare), IsEmpty());
    EXPECT_THAT(report(kShare), ElementsAre("first", "registered"));

    controller->registerForEventCallback(
        0, [this](const object&) { std::exchange(controller, nullptr)->destroy(); });
    controller->registerForEventCallback(0, tell("later callback"));
    EXPECT_THAT(report(0), ElementsAre("later callback"));
}

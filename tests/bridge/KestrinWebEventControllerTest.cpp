#include "bridge/KestrinWebEventController.h"
#include "WebViewTest.h"
#include "bridge/KestrinWebEvent.h"

#include <boost/json.hpp>
#include <gmock/gmock.h>

using namespace kestrin;
namespace json = boost::json;
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
    void handle(const json::object& data) {
        told.push_back(name + (data.contains("n") ? json::serialize(data.at("n")) : ""));
    }
};

struct KestrinWebEventControllerTest : test::WebViewTest {
    KestrinWebEventController::Callback tell(const std::string& name) {
        return [this, name](const json::object&) { told.push_back(name); };
    }
    std::shared_ptr<Target> target(const std::string& name) {
        return std::make_shared<Target>(Target{told, name});
    }
    void report(std::ptrdiff_t event) {
        controller->onWebEvent(event, std::make_shared<json::object>(json::object{{"n", 1}}));
        runMain();
    }
    std::vector<std::string> takeTold() { return std::exchange(told, {}); }

    std::vector<std::string> told;
    std::shared_ptr<Target> first = target("first"), second = target("second");
    std::shared_ptr<KestrinWebEventController> controller = KestrinWebEventController::initWithMain(webView);
};

} // namespace

TEST_F(KestrinWebEventControllerTest, HandlersRunBeforeCallbacksEachInOrder) {
    controller->registerForEventCallback(kShare, tell("callback"));
    controller->registerForEventCallback(kShare, nullptr);
    controller->registerForEvent(kShare, &Target::handle, second);
    controller->registerForEvent(kShare, &Target::handle, first);
    controller->registerForEvent(kShare, &Target::handle, second);
    controller->registerForEventCallback(kShare, tell("last"));
    controller->registerForEventCallback(0, tell("another event"));
    report(kShare);
    EXPECT_THAT(told, ElementsAre("second1", "first1", "second1", "callback", "last"));
}

TEST_F(KestrinWebEventControllerTest, DeliversLaterOnMainEvenFromMain) {
    controller->registerForEventCallback(kShare, tell("x"));
    controller->onWebEvent(kShare, nullptr);
    test::offMain([&] { controller->onWebEvent(kShare, nullptr); });
    EXPECT_THAT(told, IsEmpty());
    runMain();
    EXPECT_THAT(told, ElementsAre("x", "x"));
}

TEST_F(KestrinWebEventControllerTest, NumbersOutsideTheTableAreDroppedSilently) {
    for (const std::int32_t event : {-1, 22, 2147483647}) {
        controller->registerForEventCallback(event, tell("x"));
        controller->registerForEvent(event, &Target::handle, first);
        report(event);
    }
    report(KestrinWebEvent::kNotFound);
    EXPECT_THAT(told, IsEmpty());
    EXPECT_THAT(takeLog(), IsEmpty());
}

TEST_F(KestrinWebEventControllerTest, AGoneTargetIsWarnedOfOnceAndTheOthersRun) {
    controller->registerForEvent(kShare, &Target::handle, first);
    controller->registerForEvent(kShare, &Target::handle, second);
    controller->registerForEventCallback(kShare, tell("callback"));
    first.reset();
    report(kShare);
    EXPECT_THAT(takeLog(), ElementsAre(kWarning));
    EXPECT_THAT(takeTold(), ElementsAre("second1", "callback"));
    report(kShare);
    EXPECT_THAT(takeLog(), IsEmpty());
    EXPECT_THAT(told, ElementsAre("second1", "callback"));
}

TEST_F(KestrinWebEventControllerTest, AfterDestroyNothingIsDeliveredOrRegistered) {
    controller->registerForEventCallback(kShare, tell("before"));
    controller->onWebEvent(kShare, nullptr);
    controller->destroy();
    EXPECT_EQ(webView->delegate(), nullptr);
    controller->registerForEventCallback(kShare, tell("after"));
    controller->registerForEvent(kShare, &Target::handle, first);
    report(kShare);
    EXPECT_THAT(told, IsEmpty());
    EXPECT_THAT(takeLog(), IsEmpty());
}

TEST_F(KestrinWebEventControllerTest, DestroyLeavesALaterDelegateAlone) {
    const auto later = KestrinWebEventController::initWithMain(webView);
    controller->destroy();
    EXPECT_EQ(webView->delegate(), later);
}

TEST_F(KestrinWebEventControllerTest, ACallbackMayDestroyOrRegister) {
    controller->registerForEventCallback(kShare, [this](const json::object&) {
        told.push_back("registers");
        controller->registerForEventCallback(kShare, tell("registered"));
        controller->registerForEvent(kShare, &Target::handle, first);
    });
    report(kShare);
    EXPECT_THAT(takeTold(), ElementsAre("registers"));
    report(kShare);
    EXPECT_THAT(takeTold(), ElementsAre("first1", "registers", "registered"));

    struct Destroyer {
        std::shared_ptr<KestrinWebEventController>& owner;
        void handle(const json::object&) {
            owner->destroy();
            owner.reset();
        }
    };
    const auto destroyer = std::make_shared<Destroyer>(Destroyer{controller});
    controller->registerForEvent(0, &Destroyer::handle, destroyer);
    controller->registerForEvent(0, &Target::handle, second);
    controller->registerForEventCallback(0, tell("callback"));
    report(0);
    EXPECT_EQ(controller, nullptr);
    EXPECT_THAT(told, ElementsAre("second1"));
}

TEST_F(KestrinWebEventControllerTest, APostedEventOutlivesTheLastReference) {
    controller->registerForEventCallback(kShare, tell("x"));
    controller->onWebEvent(kShare, nullptr);
    controller.reset();
    runMain();
    EXPECT_THAT(told, ElementsAre("x"));
}

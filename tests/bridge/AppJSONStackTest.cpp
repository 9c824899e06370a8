#include "bridge/AppJSONStack.h"
#include "WebViewTest.h"
#include "services/util/Base64.h"

#include <boost/json.hpp>
#include <gmock/gmock.h>

#include <limits>

using namespace kestrin;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

struct AppJSONStackTest : test::WebViewTest {
    AppJSONStackTest() { prepare(); }

    AppJSONStack::StackKey event(const std::string& name, boost::json::value member) {
        auto stack = stacks->push(name);
        stacks->pushVar("member", std::move(member), stack);
        return stack;
    }
    std::vector<std::string> sent() { return std::exchange(page().scripts, {}); }
    static std::string call(std::string_view events) {
        return "window.kestrinSDKEventHandler('" + base64Encode(events) + "');";
    }

    const std::shared_ptr<AppJSONStack> stacks = AppJSONStack::initWithView(webView);
};

} // namespace

TEST_F(AppJSONStackTest, ACriticalEventGoesOutAloneAndComesBackEmpty) {
    stacks->deploy(event("Waiting", 1), false);
    const auto stack = event("DeviceInfo", nullptr);
    stacks->deploy(stack, true);
    stacks->deploy(nullptr, true);
    EXPECT_THAT(sent(), ElementsAre(call(R"([{"eventName":"sdkDeviceInfo","data":{"member":null}}])")));
    stack->print();
    EXPECT_EQ(takeLog().back(), R"(AppEventStack -> {"eventName":"sdkDeviceInfo","data":{}})");
    EXPECT_EQ(stacks->push("DeviceInfo"), stack);
}

TEST_F(AppJSONStackTest, TheRestWaitsForTheUpdateInOrder) {
    const auto stack = event("B", 1);
    stacks->deploy(stack, false);
    stacks->deploy(event("A", 2), false);
    stacks->pushVar("member", 3, stack);
    EXPECT_THAT(sent(), IsEmpty());
    stacks->update();
    stacks->update();
    EXPECT_THAT(
        sent(),
        ElementsAre(
            call(R"([{"eventName":"sdkB","data":{"member":3}},{"eventName":"sdkA","data":{"member":2}}])")));
    EXPECT_EQ(stacks->push("B"), stack);

    stacks->deploy(event("A", 1), false);
    stacks->deploy(event("B", std::numeric_limits<double>::quiet_NaN()), false);
    stacks->update();
    EXPECT_THAT(sent(), ElementsAre(call("[]"))) << "of a batch that cannot be written";
}

#include "bridge/AppJSONStack.h"
#include "WebViewTest.h"
#include "services/util/Base64.h"
#include "services/util/Json.h"

#include <boost/json.hpp>
#include <gmock/gmock.h>

#include <limits>

using namespace kestrin;
namespace json = boost::json;
using testing::IsEmpty;

namespace {

struct AppJSONStackTest : test::WebViewTest {
    AppJSONStackTest() { prepare(); }

    AppJSONStack::StackKey event(const std::string& name, json::value member) {
        auto stack = stacks.push(name);
        stacks.pushVar("member", std::move(member), stack);
        return stack;
    }
    /// The lists of events that the page got since the last call, as one JSON text.
    std::string sent() {
        json::array lists;
        for (const std::string& script : std::exchange(page().scripts, {})) {
            constexpr std::string_view kHead = "window.kestrinSDKEventHandler('", kTail = "');";
            EXPECT_TRUE(script.starts_with(kHead) && script.ends_with(kTail)) << script;
            lists.push_back(
                decoded(script.substr(kHead.size(), script.size() - kHead.size() - kTail.size())));
        }
        return json::serialize(lists);
    }
    static json::value decoded(const std::string& text) { return json::parse(base64Decode(text).value()); }

    AppJSONStack stacks{webView};
};

} // namespace

TEST_F(AppJSONStackTest, ACriticalEventGoesOutAloneWithNullsKept) {
    stacks.deploy(event("Waiting", 1), false);
    const auto stack = event("DeviceInfo", textOrNull(std::nullopt));
    stacks.pushVar("name", textOrNull("n"), stack);
    stacks.deploy(stack, true);
    EXPECT_EQ(sent(), R"([[{"eventName":"sdkDeviceInfo","data":{"member":null,"name":"n"}}]])");
}

TEST_F(AppJSONStackTest, SentEventsComeBackEmptyByName) {
    const auto stack = event("DeviceInfo", 1), another = event("DeviceInfo", 2);
    EXPECT_NE(stack, another);
    stacks.deploy(stack, true);
    stacks.deploy(another, true);
    EXPECT_NE(stacks.push("Trigger"), another);
    EXPECT_EQ(stacks.push("DeviceInfo"), another);
    EXPECT_EQ(stacks.push("DeviceInfo"), stack);
    EXPECT_EQ(stack->getMainStack(), json::parse(R"({"eventName":"sdkDeviceInfo","data":{}})"));
    const auto fresh = stacks.push("DeviceInfo");
    EXPECT_TRUE(fresh != stack && fresh != another);

    const auto stranger = std::make_shared<AppEventStack>("Stranger");
    stacks.deploy(stranger, true);
    EXPECT_NE(stacks.push("Stranger"), stranger);
}

TEST_F(AppJSONStackTest, TheRestWaitsForTheUpdateInOrder) {
    const auto stack = event("B", 1);
    stacks.deploy(stack, false);
    stacks.deploy(event("A", 2), false);
    stacks.pushVar("member", 3, stack);
    EXPECT_THAT(page().scripts, IsEmpty());
    stacks.update();
    EXPECT_EQ(sent(),
              R"([[{"eventName":"sdkB","data":{"member":3}},{"eventName":"sdkA","data":{"member":2}}]])");
    stacks.update();
    EXPECT_THAT(page().scripts, IsEmpty());
    EXPECT_EQ(stacks.push("B"), stack);
}

TEST_F(AppJSONStackTest, UpdateDirectTakesWithoutSending) {
    EXPECT_EQ(stacks.updateDirect(), std::nullopt);
    stacks.deploy(event("A", true), false);
    EXPECT_EQ(decoded(stacks.updateDirect().value()),
              json::parse(R"([{"eventName":"sdkA","data":{"member":true}}])"));
    EXPECT_EQ(stacks.updateDirect(), std::nullopt);
    EXPECT_THAT(page().scripts, IsEmpty());
}

TEST_F(AppJSONStackTest, ABatchThatCannotBeWrittenIsEmpty) {
    stacks.deploy(event("A", 1), false);
    stacks.deploy(event("B", std::numeric_limits<double>::quiet_NaN()), false);
    stacks.update();
    EXPECT_EQ(sent(), "[[]]");
}

TEST_F(AppJSONStackTest, AbsentThingsDoNothing) {
    stacks.pushVar("a", 1, nullptr);
    stacks.deploy(nullptr, true);
    stacks.deploy(nullptr, false);
    stacks.deployDirect(std::nullopt);
    stacks.update();
    EXPECT_THAT(page().scripts, IsEmpty());
    stacks.deployDirect("as it is");
    EXPECT_THAT(page().scripts, testing::ElementsAre("window.kestrinSDKEventHandler('as it is');"));

    AppJSONStack blind(nullptr);
    const auto stack = blind.push("A");
    blind.deploy(stack, true);
    blind.update();
    EXPECT_EQ(decoded(blind.updateDirect().value()), json::parse(R"([{"eventName":"sdkA","data":{}}])"));
}

TEST_F(AppJSONStackTest, PrintDescribesTheEvent) {
    event("A", 1)->print();
    EXPECT_EQ(takeLog().back(), R"(AppEventStack -> {"eventName":"sdkA","data":{"member":1}})");
}

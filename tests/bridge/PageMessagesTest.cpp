#include "WebViewTest.h"
#include "bridge/KestrinWebEvent.h"
#include "services/util/Base64.h"

#include <boost/json.hpp>
#include <gmock/gmock.h>

using namespace kestrin;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

struct Receiver : WebEventDelegate {
    void onWebEvent(std::ptrdiff_t event, EventData data) override {
        events.push_back(event);
        newest = std::move(data);
    }
    std::vector<std::ptrdiff_t> events;
    EventData newest;
};

struct PageMessagesTest : test::WebViewTest {
    PageMessagesTest() {
        webView->registerEventDelegate(receiver);
        prepare();
    }
    void post(std::string_view body) { EXPECT_TRUE(page().post("kestrin", body)); }
    std::vector<std::ptrdiff_t> takeEvents() {
        runMain();
        return std::exchange(receiver->events, {});
    }

    const std::string share = R"({"eventName":"onShare","data":{"x":[1,2.5]}})";
    std::shared_ptr<Receiver> receiver = std::make_shared<Receiver>();
};

} // namespace

TEST_F(PageMessagesTest, BothHandlersDeliverLaterWithTheWholeObject) {
    EXPECT_TRUE(page().post("kestrinjs", base64Encode(R"({"eventName":"onWebGLReady"})")));
    post(base64Encode(share));
    EXPECT_THAT(receiver->events, IsEmpty());
    EXPECT_THAT(takeEvents(), ElementsAre(1, 21));
    EXPECT_EQ(*receiver->newest, boost::json::parse(share));
    post(base64Encode(R"({"eventName":"onshare"})"));
    EXPECT_THAT(takeEvents(), ElementsAre(KestrinWebEvent::kNotFound));
}

TEST_F(PageMessagesTest, WhatDoesNotDecodeIsNoObjectAndIsNotLogged) {
    const std::string bodies[] = {share, base64Encode(share) + "\n", base64Encode("[\"eventName\"]"),
                                  base64Encode(std::string(1'000'000, '['))};
    for (const std::string& body : bodies) {
        post(body);
        EXPECT_THAT(takeEvents(), ElementsAre(KestrinWebEvent::kNotFound)) << body.substr(0, 40);
        EXPECT_EQ(receiver->newest, nullptr);
    }
    EXPECT_THAT(takeLog(), IsEmpty());
}

TEST_F(PageMessagesTest, SubmitSignalsTheFrameListenerInAnyCase) {
    for (const char* body : {"onSubmit", "ONSUBMIT", "onsubmit"})
        post(body);
    EXPECT_THAT(takeEvents(), IsEmpty());
    webView->prepare(nullptr);
    post("onSubmit");
    EXPECT_THAT(takeEvents(), ElementsAre(KestrinWebEvent::kNotFound));
    EXPECT_EQ(frames->signals, 3);
}

TEST_F(PageMessagesTest, MessagesBeyondTheBoundAreDroppedUndecoded) {
    post(std::string(KestrinWebView::kMaxWaitingBytes, ' '));
    post("onShare");
    post("onShare");
    EXPECT_THAT(takeLog(),
                ElementsAre("KestrinWebView - Dropping page messages, those that wait would exceed "
                            "67108864 bytes."));
    EXPECT_THAT(takeEvents(), ElementsAre(KestrinWebEvent::kNotFound));
    post(base64Encode(share));
    EXPECT_THAT(takeEvents(), ElementsAre(21));
    post(base64Encode(share));
    webView->registerEventDelegate({});
    EXPECT_THAT(takeEvents(), IsEmpty()) << "left before the delivery";
}

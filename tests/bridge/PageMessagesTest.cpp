#include "WebViewTest.h"
#include "bridge/KestrinWebEvent.h"
#include "services/util/Base64.h"

#include <boost/json.hpp>
#include <gmock/gmock.h>

using namespace kestrin;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr const char* kDropped =
    "KestrinWebView - Dropping page messages, those that wait would exceed 67108864 bytes.";

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
    void post(std::string_view body) { ASSERT_TRUE(page().post("kestrin", body)); }
    void postJson(std::string_view json) { post(base64Encode(json)); }
    std::vector<std::ptrdiff_t> takeEvents() {
        runMain();
        return std::exchange(receiver->events, {});
    }

    std::shared_ptr<Receiver> receiver = std::make_shared<Receiver>();
};

} // namespace

TEST_F(PageMessagesTest, BothHandlersDeliverLaterWithTheWholeObject) {
    postJson(R"({"eventName":"onShare","data":{"x":[1,2.5]}})");
    EXPECT_TRUE(page().post("kestrinjs", base64Encode(R"({"eventName":"onWebGLReady"})")));
    EXPECT_FALSE(page().post("other", "x"));
    EXPECT_THAT(receiver->events, IsEmpty());
    EXPECT_THAT(takeEvents(), ElementsAre(21, 1));
    postJson(R"({"eventName":"onShare","data":{"x":[1,2.5]}})");
    runMain();
    EXPECT_EQ(*receiver->newest, boost::json::parse(R"({"eventName":"onShare","data":{"x":[1,2.5]}})"));
}

TEST_F(PageMessagesTest, NamesThatAreNoEventsAreNotFound) {
    for (const char* json : {"{}", R"({"eventName":5})", R"({"eventName":null})",
                             R"({"eventName":"onshare"})", R"({"eventName":"onShare\u0000"})"}) {
        postJson(json);
        EXPECT_THAT(takeEvents(), ElementsAre(KestrinWebEvent::kNotFound)) << json;
        EXPECT_NE(receiver->newest, nullptr);
    }
}

TEST_F(PageMessagesTest, WhatDoesNotDecodeIsNoObjectAndIsNotLogged) {
    const std::string json = R"({"eventName":"onShare"})", good = base64Encode(json);
    const std::string nul(1, '\0');
    const std::string notBase64[] = {
        "",          "onSubmi",  "onSubmit ",        "onSubmit" + nul, nul,         json,
        good + "\n", good + nul, "\xFF\xFE\xFD\xFC", good.substr(1),   good + good, "data:;base64," + good};
    const std::string notAnObject[] = {"",
                                       "5",
                                       "[\"eventName\"]",
                                       json + nul + "x",
                                       nul + json,
                                       "{\"eventName\":\"\xC3(\"}",
                                       "{\"a\":" + std::string(600, '[') + std::string(600, ']') + "}",
                                       std::string(1'000'000, '['),
                                       std::string(1'000'000, '{')};
    std::vector<std::string> bodies(std::begin(notBase64), std::end(notBase64));
    for (const std::string& text : notAnObject)
        bodies.push_back(base64Encode(text));
    for (const std::string& body : bodies) {
        post(body);
        EXPECT_THAT(takeEvents(), ElementsAre(KestrinWebEvent::kNotFound)) << body.substr(0, 40);
        EXPECT_EQ(receiver->newest, nullptr);
    }
    EXPECT_THAT(takeLog(), IsEmpty());
    EXPECT_EQ(frames->signals, 0);
}

TEST_F(PageMessagesTest, SubmitSignalsTheFrameListenerInAnyCase) {
    for (const char* body : {"onSubmit", "ONSUBMIT", "onsubmit"})
        post(body);
    EXPECT_EQ(frames->signals, 3);
    EXPECT_THAT(takeEvents(), IsEmpty());

    webView->prepare(nullptr);
    post("onSubmit");
    EXPECT_EQ(frames->signals, 3);
    EXPECT_THAT(takeEvents(), ElementsAre(KestrinWebEvent::kNotFound));
    EXPECT_EQ(receiver->newest, nullptr);

    const auto newer = std::make_shared<test::CountingFrameListener>();
    webView->prepare(newer);
    post("onSubmit");
    EXPECT_EQ(newer->signals, 1);
}

TEST_F(PageMessagesTest, TheDelegateIsReadAgainBeforeDelivery) {
    postJson(R"({"eventName":"onShare"})");
    webView->registerEventDelegate({});
    EXPECT_THAT(takeEvents(), IsEmpty());
    postJson(R"({"eventName":"onShare"})");
    webView->registerEventDelegate(receiver);
    EXPECT_THAT(takeEvents(), IsEmpty());
    postJson(R"({"eventName":"onShare"})");
    receiver.reset();
    runMain();
}

TEST_F(PageMessagesTest, MessagesBeyondTheBoundAreDroppedUndecoded) {
    std::string huge(KestrinWebView::kMaxWaitingBytes, ' ');
    post(huge);
    EXPECT_THAT(takeLog(), IsEmpty());
    EXPECT_THAT(takeEvents(), ElementsAre(KestrinWebEvent::kNotFound));
    huge += "    ";
    post(huge);
    post(huge);
    EXPECT_THAT(takeLog(), ElementsAre(kDropped));
    EXPECT_THAT(takeEvents(), IsEmpty());
    postJson(R"({"eventName":"onShare"})");
    EXPECT_THAT(takeEvents(), ElementsAre(21));
}

TEST_F(PageMessagesTest, AFloodIsBoundedAndTheRestArrives) {
    const std::string body = base64Encode(R"({"eventName":"onShare"})");
    constexpr std::size_t kPosted = 100'000;
    for (std::size_t i = 0; i < kPosted; ++i)
        page().post("kestrin", body);
    EXPECT_THAT(takeLog(), ElementsAre(kDropped));
    const std::size_t arrived = takeEvents().size();
    EXPECT_GT(arrived, kPosted / 2);
    EXPECT_LT(arrived, kPosted);
    post(body);
    EXPECT_THAT(takeEvents(), ElementsAre(21));
}

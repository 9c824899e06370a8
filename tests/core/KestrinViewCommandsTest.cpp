#include "KestrinViewTest.h"
#include "core/KestrinCVSession.h"
#include "core/config/KestrinFeatureFlags.h"

#include <boost/json.hpp>

namespace kestrin {

using namespace platform;
using namespace test;

namespace json = boost::json;

struct Commands : KestrinViewTest {
    Commands() {
        system->files.info["CFBundleShortVersionString"] = "2.5";
        startUp();
    }
    /// The events in a batch that the page was sent.
    static json::array batchIn(const std::string& script) {
        const std::string before = "window.kestrinSDKEventHandler('", after = "');";
        EXPECT_TRUE(script.starts_with(before)) << script;
        const auto text = script.substr(before.size(), script.size() - before.size() - after.size());
        return json::parse(base64Decode(text).value_or("[]")).as_array();
    }
    /// Asks for the device's information: "data" of the answer.
    json::object deviceInfo() {
        takeScripts();
        post("onRequestSDKDeviceInfo");
        const auto scripts = takeScripts();
        EXPECT_EQ(scripts.size(), 2U);
        EXPECT_EQ(scripts[0], appDetail());
        const json::array batch = batchIn(scripts.at(1));
        EXPECT_EQ(batch.at(0).at("eventName"), "sdkDeviceInfo");
        return batch.at(0).at("data").as_object();
    }
    static std::string appDetail() {
        return format("window.__KRJ_Native_IN.onAppDetailUpdate(atob('%@'));",
                      KestrinFeatureFlags::getInstance()->getAppDetailBase64());
    }
};

TEST_F(Commands, AnswersWithTheDevice) {
    EXPECT_EQ(deviceInfo(), (json::object{{"name", "testhost"},
                                          {"systemName", "Linux"},
                                          {"model", ""},
                                          {"systemVersion", "1.0"},
                                          {"sdkVersion", "2.5"},
                                          {"engine", "NATIVEAR"},
                                          {"urlParams", "null"}}));
    KestrinSettings::setExternalIntent(std::make_shared<const json::value>(json::object{{"campaign", 7}}));
    system->files.info.clear();
    const auto info = deviceInfo();
    EXPECT_EQ(info.at("urlParams"), json::value(json::object{{"campaign", 7}}));
    EXPECT_EQ(info.at("sdkVersion"), nullptr);
}

TEST_F(Commands, HidesTheLoadingOverlayOnceThePageDraws) {
    const auto loading = view->subviews()[2];
    EXPECT_FALSE(loading->isHidden());
    post("onWebGLReady");
    EXPECT_EQ(takeScripts().size(), 2U) << "and sends what it sends of the device";
    advance(1);
    EXPECT_TRUE(loading->isHidden());
}

TEST_F(Commands, DrivesTheEngine) {
    struct Case {
        const char *event, *effect;
    };
    const Case cases[] = {
        {"onStopAREngine", "ARKitMarkerlessProcessor::pause"},
        {"onResumeAREngine", "ARKitMarkerlessProcessor::reset"},
        {"onPauseAREngine", "ARKitMarkerlessProcessor::pause"},
        {"onStartMarkerless", "ARKitMarkerlessProcessor::start"},
        {"onStartMarkerlessPlacement",
         "ARKit Placement mode is not supported. This is an operation which runs in the WebGL layer."},
    };
    for (const auto& [event, effect] : cases) {
        takeLog();
        post(event);
        EXPECT_EQ(takeLog()[0], format("KestrinView - %@ - UI template call", event));
        post(event);
        EXPECT_EQ(logged(effect), 1) << event;
    }
    view->pause();
    for (const auto& [event, effect] : cases) {
        takeLog();
        post(event);
        EXPECT_EQ(takeLog(),
                  Lines{format("KestrinView - %@ - UI template call ignored. User Paused.", event)});
    }
}

TEST_F(Commands, GatesPosesByTheEngine) {
    const auto posesOf = [&] {
        takeScripts();
        session().send(makeFrame(1));
        return takeScripts().size();
    };
    post("onStartMarkerless");
    EXPECT_EQ(posesOf(), 0U) << "tracking alone opens no camera";
    post("onResumeAREngine");
    EXPECT_EQ(posesOf(), 1U);
    takeLog();
    post("onStartAREngine");
    EXPECT_EQ(logged("KestrinView - onStartAREngine - UI template call"), 1);
    EXPECT_EQ(posesOf(), 0U);
    post("onStartMarkerless");
    EXPECT_EQ(posesOf(), 0U) << "which restarts neither session nor camera";
}

TEST_F(Commands, SendsFlagsWhenTheEngineStarts) {
    view->pause(); // makes no difference here
    takeScripts();
    post("onStartAREngine");
    EXPECT_EQ(takeScripts(), (Lines{appDetail(), call("onFeatureFlagsUpdate(atob('" +
                                                      base64Encode(R"(["one"])") + "'));")}));
    takeLog();
    view->resume();
    EXPECT_EQ(logged("CVManager - resume"), 0) << "the page has to ask for it";
}

TEST_F(Commands, OpensAddresses) {
    post("onOpenExternalUrl", R"({"url":"https://a.example/:external?x=:external1"})");
    for (const char* nothing : {"{}", R"({"url":null})", R"({"url":7})", R"({"url":":external"})", "[]", "3"})
        post("onOpenExternalUrl", nothing);
    EXPECT_EQ(system->app.openedUrls, Lines{"https://a.example/?x=1"});
}

TEST_F(Commands, HandsOutTheStartCommand) {
    post("onRequestApplication");
    const auto scripts = takeScripts();
    ASSERT_EQ(scripts.size(), 1U);
    EXPECT_EQ(batchIn(scripts[0]).at(0).at("data").at("appID"), "A1");
    view->setup(std::nullopt);
    runMain();
    takeScripts();
    post("onRequestApplication");
    EXPECT_TRUE(takeScripts().empty()) << "these settings have none";
}

TEST_F(Commands, ChangesTheApplication) {
    answerFlags("other.example", "B2", R"([\"two\"])");
    const auto change = [&](const std::string& key) {
        post("onChangeApp", json::serialize(json::object{{"data", key}}));
    };
    const std::string command = base64Encode(R"([{"data":{"appID":"B2"}}])");
    const auto key = base64Encode(
        json::serialize(json::object{{"baseUrl", "http://other.example/t.html"}, {"baseCommand", command}}));
    advance(2);
    post("onWebGLReady");
    advance(2);
    takeLog();
    change(key);
    EXPECT_EQ(logged("KestrinView - onChangeApp - changing application - B2"), 1);
    EXPECT_EQ(logged("CVManager - pause"), 1);
    EXPECT_EQ(page().loads.back().url, "https://other.example/t.html");
    EXPECT_TRUE(KestrinFeatureFlags::getInstance()->containsFlag("two"));
    EXPECT_FALSE(view->subviews()[2]->isHidden()) << "the loading overlay is back";
    for (int i = 0; i < 2; ++i) {
        const auto info = deviceInfo();
        EXPECT_EQ(info.at("app_change_from"), "A1");
        EXPECT_EQ(info.at("app_change_into"), "B2");
    }

    // A bad key string changes nothing but where a change would come from.
    const auto requests = system->server.requests().size();
    takeLog();
    change("no key string");
    EXPECT_TRUE(takeLog().at(0).starts_with("Invalid Settings"));
    EXPECT_EQ(system->server.requests().size(), requests);
    EXPECT_EQ(deviceInfo().at("app_change_from"), "B2");
    EXPECT_EQ(page().loads.back().url, "https://other.example/t.html");
}

TEST_F(Commands, LeavesOtherEventsToTheHost) {
    Lines heard;
    for (const int event : {8, 12, 16, 4})
        view->registerForEventCallback(event, [&](const json::object& data) {
            heard.emplace_back(data.at("eventName").as_string().c_str());
        });
    takeLog();
    for (const char* event : {"onEnableTriggers", "onSendAnalytics", "onWebUpdate", "onPauseAREngine"})
        post(event);
    EXPECT_EQ(heard, (Lines{"onEnableTriggers", "onSendAnalytics", "onWebUpdate", "onPauseAREngine"}));
    EXPECT_EQ(takeLog()[0], "KestrinView - onPauseAREngine - UI template call");
}

TEST_F(Commands, SaysWhatTheDeviceCan) {
    EXPECT_TRUE(KestrinCVSession::isARSupported());
    EXPECT_TRUE(KestrinCVSession::isMarkerARSupported());
    EXPECT_FALSE(KestrinCVSession::isSimulator());
    system->level = 11.2;
    EXPECT_TRUE(KestrinCVSession::isARSupported());
    EXPECT_FALSE(KestrinCVSession::isMarkerARSupported());
    system->level = 10;
    EXPECT_FALSE(KestrinView::isSupported());
    EXPECT_NE(KestrinCVSession::initKestrinView(), nullptr);
    EXPECT_EQ(KestrinView::getVersion(), "2.5");
}

} // namespace kestrin

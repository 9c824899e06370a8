#include "KestrinViewTest.h"
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
    /// Asks for the device's information: "data" of the answer.
    json::object deviceInfo() {
        takeScripts();
        post("onRequestSDKDeviceInfo");
        const auto scripts = takeScripts();
        EXPECT_EQ(scripts.at(0), appDetail());
        const std::string before = "window.kestrinSDKEventHandler('", after = "');";
        EXPECT_TRUE(scripts.at(1).starts_with(before)) << scripts[1];
        const auto length = scripts[1].size() - before.size() - after.size();
        const auto batch = json::parse(base64Decode(scripts[1].substr(before.size(), length)).value_or("[]"));
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

TEST_F(Commands, SendsFlagsWhenTheEngineStarts) {
    post("onStartAREngine");
    EXPECT_EQ(takeScripts(), (Lines{appDetail(), call("onFeatureFlagsUpdate(atob('" +
                                                      base64Encode(R"(["one"])") + "'));")}));
}

TEST_F(Commands, ChangesTheApplication) {
    answerFlags("other.example", "B2", R"([\"two\"])");
    const std::string command = base64Encode(R"([{"data":{"appID":"B2"}}])");
    takeLog();
    const auto key = base64Encode(
        json::serialize(json::object{{"baseUrl", "http://other.example/t.html"}, {"baseCommand", command}}));
    post("onChangeApp", json::serialize(json::object{{"data", key}}));
    EXPECT_EQ(logged("KestrinView - onChangeApp - changing application - B2"), 1);
    EXPECT_EQ(page().loads.back().url, "https://other.example/t.html");
    EXPECT_TRUE(KestrinFeatureFlags::getInstance()->containsFlag("two"));
    const auto info = deviceInfo();
    EXPECT_EQ(info.at("app_change_from"), "A1");
    EXPECT_EQ(info.at("app_change_into"), "B2");
}

} // namespace kestrin

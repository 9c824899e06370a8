#include "KestrinViewTest.h"
#include "core/config/KestrinFeatureFlags.h"

namespace kestrin {

using namespace platform;
using namespace test;

struct Commands : KestrinViewTest {
    Commands() { startUp(); }
    static std::string appDetail() {
        return call(format("onAppDetailUpdate(atob('%@'));",
                           KestrinFeatureFlags::getInstance()->getAppDetailBase64()));
    }
};

TEST_F(Commands, TellsTheDeviceAlsoAfterAChangeOfApplication) {
    system->files.info["CFBundleShortVersionString"] = "2.5";
    post("onRequestSDKDeviceInfo");
    const std::string device = R"({"name":"testhost","systemName":"Linux","model":"","systemVersion":"1.0",)"
                               R"("sdkVersion":"2.5","engine":"NATIVEAR","urlParams":"null")";
    EXPECT_EQ(takeScripts(), (Lines{appDetail(), event("DeviceInfo", device + "}")}));

    answerFlags("other.example", "B2", R"([\"two\"])");
    const std::string command = base64Encode(R"([{"data":{"appID":"B2"}}])");
    const std::string key =
        format(R"({"baseUrl":"http://other.example/t.html","baseCommand":"%@"})", command);
    post("onChangeApp", format(R"({"data":"%@"})", base64Encode(key)));
    EXPECT_EQ(logged("KestrinView - onChangeApp - changing application - B2"), 1);
    EXPECT_EQ(page().loads.back().url, "https://other.example/t.html");
    EXPECT_TRUE(KestrinFeatureFlags::getInstance()->containsFlag("two"));
    takeScripts();
    post("onWebGLReady");
    EXPECT_EQ(takeScripts().back(),
              event("DeviceInfo", device + R"(,"app_change_from":"A1","app_change_into":"B2"})"));
    post("onRequestApplication");
    EXPECT_EQ(takeScripts(), Lines{"window.kestrinSDKEventHandler('" + command + "');"});
}

TEST_F(Commands, DrivesTheEngine) {
    const std::pair<const char*, const char*> cases[] = {
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
        EXPECT_EQ(logged(effect), 1) << event;
        EXPECT_EQ(takeLog()[0], format("KestrinView - %@ - UI template call", event));
    }
    post("onResumeAREngine");
    EXPECT_TRUE(session().isRunning());
    takeScripts();
    post("onStartAREngine");
    EXPECT_EQ(takeScripts(),
              (Lines{call("onPlaneClear();"), appDetail(),
                     call("onFeatureFlagsUpdate(atob('" + base64Encode(R"(["one"])") + "'));")}));
    EXPECT_FALSE(session().isRunning());
    view->pause();
    for (const auto& [event, effect] : cases) {
        takeLog();
        post(event);
        EXPECT_EQ(takeLog(),
                  Lines{format("KestrinView - %@ - UI template call ignored. User Paused.", event)});
    }
}

TEST_F(Commands, OpensAddressesInTheSystem) {
    post("onOpenExternalUrl", R"({"url":"https://a/:external?b:external"})");
    post("onOpenExternalUrl");
    EXPECT_EQ(system->app.openedUrls, Lines{"https://a/?b"});
}

} // namespace kestrin

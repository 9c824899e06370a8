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

TEST_F(Commands, TellsTheDevice) {
    system->files.info["CFBundleShortVersionString"] = "2.5";
    post("onRequestSDKDeviceInfo");
    EXPECT_EQ(takeScripts(),
              (Lines{appDetail(),
                     event("DeviceInfo",
                           R"({"name":"testhost","systemName":"Linux","model":"","systemVersion":"1.0",)"
                           R"("sdkVersion":"2.5","engine":"NATIVEAR","urlParams":"null"})")}));
}

TEST_F(Commands, DrivesTheEngine) {
    const std::pair<const char*, const char*> cases[] = {
        {"onStopAREngine", "ARKitMarkerlessProcessor::pause"},
        {"onResumeAREngine", "ARKitMarkerlessProcessor::reset"},
        {"onPauseAREngine", "ARKitMarkerlessProcessor::pause"},
        {"onStartMarkerless", "ARKitMarkerlessProcessor::start"},
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

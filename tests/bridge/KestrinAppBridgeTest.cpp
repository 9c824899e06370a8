#include "bridge/KestrinAppBridge.h"
#include "WebViewTest.h"
#include "bridge/AppJSONStack.h"
#include "services/util/Base64.h"
#include "services/util/Format.h"

#include <gmock/gmock.h>

using namespace kestrin;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

struct KestrinAppBridgeTest : test::WebViewTest {
    KestrinAppBridgeTest() {
        prepare();
        KestrinSettings settings;
        settings.setTemplateUrl("https://shop.example/template");
        settings.mCommand = base64Encode(R"([{"data":{"appID":"A 1"}}])");
        bridge = KestrinAppBridge::initWith(AppJSONStack::initWithView(webView), settings);
    }
    std::vector<std::string> sent() { return std::exchange(page().scripts, {}); }
    static std::string trigger(std::string_view type, std::string_view id) {
        return format(
            "window.kestrinSDKEventHandler('%@');",
            base64Encode(format(R"([{"eventName":"sdkTrigger","data":{"type":"%@","id":"%@"}}])", type, id)));
    }
    /// It is escaped as a whole, so that it names no server; the look-up is answered here all the same.
    static std::string address(const std::string& type) {
        return "https:%2F%2Fshop.example%2Fapi%2Fv2%2Fapplication%2FA%201%2F" + type +
               "%3Ffilter[title]=50%25%20%C3%BC";
    }
    void answer(const std::string& type, const std::string& body) {
        system->server.answer(address(type), body);
    }

    std::shared_ptr<KestrinAppBridge> bridge;
    const std::string title = "50% ü";
};

} // namespace

TEST_F(KestrinAppBridgeTest, OpensWhatHasAnIdentifierAtOnce) {
    bridge->openScene("S");
    bridge->openPage("P");
    bridge->openApplication("");
    bridge->open(KestrinID::initWith("other", "O"));
    EXPECT_THAT(sent(), ElementsAre(trigger("scene", "S"), trigger("page", "P"), trigger("application", ""),
                                    trigger("other", "O")));
    EXPECT_EQ(takeLog()[0], "KestrinAppBridge - Opening Arbitrary Action Type = scene UUID = S");
}

TEST_F(KestrinAppBridgeTest, FindsByTitleInTheServersOrder) {
    answer("page", R"({"data":[{"name":"x"},5,{"id":"2"},{"id":3},{"id":null},{"id":"1"}]})");
    std::vector<KestrinID> found;
    const auto keep = [&](const auto& ids) { found = ids; };
    bridge->findPageByName(title, keep);
    EXPECT_THAT(found, IsEmpty()) << "not inside the call";
    runMain();
    const auto page = [](std::optional<std::string> id) { return KestrinID::initWith("page", id); };
    EXPECT_THAT(found, ElementsAre(page("2"), page("3"), page(std::nullopt), page("1")));
    bridge->openPageByName(title);
    runMain();
    EXPECT_THAT(sent(), ElementsAre(trigger("page", "2")));
    for (const char* nothing : {R"({"data":[{"name":"x"}]})", R"({"data":{"id":"1"}})", "[]", "<html>"}) {
        answer("scene", nothing);
        bridge->findSceneByName(title, keep);
        bridge->openSceneByName(title);
        runMain();
        EXPECT_THAT(found, IsEmpty()) << nothing;
        EXPECT_THAT(sent(), IsEmpty()) << nothing;
    }
    EXPECT_EQ(system->logSink.count("KestrinAppBridge - Unable to download"), 2);
}

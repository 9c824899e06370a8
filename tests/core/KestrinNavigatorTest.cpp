#include "core/KestrinNavigator.h"
#include "KestrinViewTest.h"
#include "bridge/KestrinAppBridge.h"

#include <gmock/gmock.h>

namespace kestrin {

using namespace test;
using testing::ElementsAre;
using testing::HasSubstr;

struct Navigator : KestrinViewTest {};

TEST_F(Navigator, KnowsTheMakersLinks) {
    for (const char* link : {"https://www.kestrin.example/?app=1", "https://www%2Ekestrin.example?a%70p=",
                             "any://me@kestrin.example:1/path?x&kestrin_app=1#app=2",
                             "https://www.kestrin.example?kestrin_app&app=1"})
        EXPECT_TRUE(KestrinNavigator::checkAppURL(link)) << link;
    for (const char* link : {"https://WWW.kestrin.example/?app=1", "https://shop.kestrin.example/?app=1",
                             "https://www.kestrin.example/#?app=1", "https://www.kestrin.example/?APP=1",
                             "https://www.kestrin.example/?app&app=1", "https://www.kestrin.example/?app=%zz",
                             "https://www.kestrin.example/?app=%C3", "https://www.kestrin.example/?app=1 2",
                             "www.kestrin.example/?app=1", ""})
        EXPECT_FALSE(KestrinNavigator::checkAppURL(link)) << link;
}

TEST_F(Navigator, AsksForTheSettingsOfALink) {
    constexpr const char* kAddress = "https://apps.kestrin.example/api/v2/application/A+%@/appkey";
    std::vector<std::string> templates;
    const auto ask = [&](const char* link, const std::string& appkey) {
        system->server.answer(kAddress, R"({"data":{"appkey":")" + appkey + R"("}})");
        KestrinNavigator::getSettingsFrom(link, [&](const auto& settings) {
            templates.push_back(settings ? settings->getTemplateUrl() : "none");
        });
        EXPECT_EQ(takeLog().back().substr(0, 7), "eval = ");
        runMain();
    };
    constexpr const char* kLink = "https://elsewhere.example/?app=B&kestrin_app=A+%25%40";
    ask(kLink, base64Encode(R"({"baseUrl":"shop.example"})"));
    ask("https://elsewhere.example/", "");
    EXPECT_THAT(templates, ElementsAre("https://shop.example", "none"));
    EXPECT_EQ(system->server.requests().back().url,
              "https://apps.kestrin.example/api/v2/application/(null)/appkey");
    ask(kLink, "e30=");
    EXPECT_THAT(takeLog().back(), HasSubstr("Invalid Settings"));
    EXPECT_EQ(templates.size(), 2U);
}

TEST_F(Navigator, DrivesThePageThereIs) {
    const auto blind = view->getNavigator();
    EXPECT_FALSE(blind->isValid());
    takeLog();
    blind->goBack();
    blind->goForward();
    blind->clearCache();
    blind->goTo("https://a.example");
    blind->setOpaque();
    EXPECT_THAT(takeLog(), ElementsAre("KestrinNavigator - goBack() - Context is null, need to reload.",
                                       "KestrinNavigator - goForward() - Context is null, need to reload.",
                                       "KestrinNavigator - clearCache() - Context is null, need to reload.",
                                       "KestrinNavigator - goTo() - Context is null, need to reload."));
    EXPECT_EQ(blind->getLastURL(), "https://a.example");
    startUp();
    const auto navigator = view->getNavigator();
    navigator->setOpaque();
    EXPECT_EQ(view->getContentView()->background(), platform::kWhite);
    const auto loads = page().loads.size();
    offMain([&] { navigator->goTo("https://b.example"); });
    EXPECT_EQ(navigator->getLastURL(), std::nullopt) << "on main only";
    runMain();
    navigator->reload();
    EXPECT_EQ(page().loads.size(), loads + 2);
    EXPECT_EQ(page().loads.back().url, "https://b.example");
}

TEST_F(Navigator, TheBridgeFollowsTheSetup) {
    EXPECT_EQ(view->getAsyncBridge(), nullptr);
    startUp();
    view->getAsyncBridge()->openScene("S");
    EXPECT_EQ(takeScripts().size(), 1U);
    view->setup(settingsFor("shop.example", "A2"));
    takeLog();
    view->getAsyncBridge()->openSceneByName("x");
    EXPECT_THAT(takeLog().back(), HasSubstr("%2FA2%2Fscene"));
}

} // namespace kestrin

#include "core/KestrinNavigator.h"
#include "KestrinViewTest.h"

#include <gmock/gmock.h>

namespace kestrin {

using namespace test;
using testing::ElementsAre;
using testing::HasSubstr;

struct Navigator : KestrinViewTest {};

TEST_F(Navigator, KnowsTheMakersLinks) {
    for (const char* link :
         {"https://www%2Ekestrin.example?a%70p=", "any://me@kestrin.example:1/path?x&kestrin_app=1#app=2"})
        EXPECT_TRUE(KestrinNavigator::checkAppURL(link)) << link;
    for (const char* link : {"https://WWW.kestrin.example/?app=1", "https://www.kestrin.example/#?app=1",
                             "https://www.kestrin.example/?app&app=1", "https://www.kestrin.example/?app=%zz",
                             "www.kestrin.example/?app=1", ""})
        EXPECT_FALSE(KestrinNavigator::checkAppURL(link)) << link;
}

TEST_F(Navigator, AsksForTheSettingsOfALink) {
    const auto ask = [&](const std::string& appkey) {
        std::vector<std::string> templates;
        system->server.answer("https://apps.kestrin.example/api/v2/application/A+%@/appkey",
                              R"({"data":{"appkey":")" + appkey + R"("}})");
        KestrinNavigator::getSettingsFrom(
            "https://elsewhere.example/?app=B&kestrin_app=A+%25%40", [&](const auto& settings) {
                templates.push_back(settings ? settings->getTemplateUrl() : "none");
            });
        runMain();
        return templates;
    };
    EXPECT_THAT(ask(base64Encode(R"({"baseUrl":"shop.example"})")), ElementsAre("https://shop.example"));
    EXPECT_THAT(ask("e30="), ElementsAre());
    EXPECT_THAT(takeLog().back(), HasSubstr("Invalid Settings"));
}

TEST_F(Navigator, DrivesThePageThereIs) {
    const auto blind = view->getNavigator();
    takeLog();
    blind->goBack();
    blind->goTo("https://a.example");
    EXPECT_THAT(takeLog(), ElementsAre("KestrinNavigator - goBack() - Context is null, need to reload.",
                                       "KestrinNavigator - goTo() - Context is null, need to reload."));
    startUp();
    const auto navigator = view->getNavigator();
    const auto loads = page().loads.size();
    offMain([&] { navigator->goTo("https://b.example"); });
    EXPECT_EQ(navigator->getLastURL(), std::nullopt) << "on main only";
    runMain();
    navigator->reload();
    EXPECT_EQ(page().loads.size(), loads + 2);
    EXPECT_EQ(page().loads.back().url, "https://b.example");
}

} // namespace kestrin

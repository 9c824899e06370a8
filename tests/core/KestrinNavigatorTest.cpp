#include "core/KestrinNavigator.h"
#include "KestrinViewTest.h"
#include "bridge/KestrinAppBridge.h"

#include <gmock/gmock.h>

#include <tuple>

namespace kestrin {

using namespace test;
using testing::Contains;
using testing::ElementsAre;

struct Navigator : KestrinViewTest {};

TEST_F(Navigator, KnowsTheMakersLinks) {
    constexpr bool kYes = true, kNo = false;
    const std::tuple<const char*, bool> links[] = {
        {"https://www.kestrin.example/?app=1", kYes},
        {"any://me@kestrin.example:1/path?x&kestrin_app=1#app=2", kYes},
        {"https://www%2Ekestrin.example?a%70p=", kYes},
        {"https://www.kestrin.example?kestrin_app&app=1", kYes},
        {"https://www.kestrin.example?app&app=1", kNo}, // the first item counts, which has no value
        {"https://www.kestrin.example/#?app=1", kNo},
        {"https://www.kestrin.example/?APP=1", kNo},
        {"https://WWW.kestrin.example/?app=1", kNo},
        {"https://shop.kestrin.example/?app=1", kNo},
        {"https://www.kestrin.example/?app=%zz", kNo},
        {"https://www.kestrin.example/?app=%C3", kNo},
        {"https://www.kestrin.example/?app=1 2", kNo},
        {"www.kestrin.example/?app=1", kNo},
        {"", kNo}};
    for (const auto& [link, is] : links)
        EXPECT_EQ(KestrinNavigator::checkAppURL(link), is) << link;
}

TEST_F(Navigator, AsksForTheSettingsOfALink) {
    constexpr const char* kAddress = "https://apps.kestrin.example/api/v2/application/A+%@/appkey";
    const auto ask = [&](const char* link) {
        int answers = 0;
        std::optional<KestrinSettings> settings;
        KestrinNavigator::getSettingsFrom(link, [&](const auto& given) {
            ++answers;
            settings = given;
        });
        EXPECT_EQ(answers, 0);
        runMain();
        return std::pair(answers, settings ? settings->getTemplateUrl() : "");
    };
    const auto answer = [&](const std::string& appkey) {
        system->server.answer(kAddress, format(R"({"data":{"appkey":%@}})", appkey));
        return ask("https://elsewhere.example/?app=B&kestrin_app=A+%25%40");
    };
    EXPECT_EQ(answer('"' + base64Encode(R"({"baseUrl":"shop.example"})") + '"'),
              std::pair(1, std::string("https://shop.example")));
    EXPECT_THAT(takeLog(), Contains(std::string("eval = ") + kAddress));
    EXPECT_EQ(answer("5"), std::pair(1, std::string()));
    EXPECT_EQ(answer("\"e30=\"").first, 0) << "a key string without an address is an error";
    EXPECT_THAT(takeLog().back(), testing::HasSubstr("Invalid Settings"));
    EXPECT_EQ(ask("https://elsewhere.example/"), std::pair(1, std::string()));
    EXPECT_THAT(takeLog(), Contains("eval = https://apps.kestrin.example/api/v2/application/(null)/appkey"));
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
    EXPECT_NE(navigator, view->getNavigator());
    navigator->setOpaque();
    EXPECT_EQ(view->getContentView()->background(), platform::kWhite);
    const auto loads = page().loads.size();
    offMain([&] {
        navigator->goTo("https://b.example");
        navigator->clearCache();
    });
    EXPECT_EQ(navigator->getLastURL(), std::nullopt) << "on main only";
    runMain();
    navigator->reload();
    ASSERT_EQ(page().loads.size(), loads + 2);
    EXPECT_EQ(page().loads.back().url, "https://b.example");
    EXPECT_EQ(system->webToolkit.cacheClears, 1);
}

TEST_F(Navigator, TheBridgeFollowsTheSetup) {
    EXPECT_EQ(view->getAsyncBridge(), nullptr);
    startUp();
    const auto first = view->getAsyncBridge();
    first->openScene("S");
    EXPECT_EQ(takeScripts().size(), 1U);
    view->destroy();
    EXPECT_EQ(view->getAsyncBridge(), first);
    view->setup(settingsFor("shop.example", "A2"));
    EXPECT_NE(view->getAsyncBridge(), first);
    takeLog();
    view->getAsyncBridge()->openSceneByName("x");
    EXPECT_THAT(takeLog().back(), testing::HasSubstr("%2FA2%2Fscene"));
}

} // namespace kestrin

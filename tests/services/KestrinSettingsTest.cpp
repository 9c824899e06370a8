#include "core/config/KestrinSettings.h"
#include "core/config/Deployment.h"
#include "core/config/LocalKeyString.h"
#include "services/util/Base64.h"
#include "support/FakeImages.h"

#include <boost/json.hpp>
#include <gtest/gtest.h>

using namespace kestrin;

namespace {

std::string keyString(std::string_view json) { return base64Encode(json); }

KestrinSettings parse(std::string_view json) { return KestrinSettings::initWithKeyString(keyString(json)); }

std::string urlOf(std::string_view baseUrl) {
    return parse("{\"baseUrl\":\"" + std::string(baseUrl) + "\"}").getTemplateUrl();
}

KestrinSettings withCommand(std::string_view json) {
    KestrinSettings settings;
    settings.mCommand = base64Encode(json);
    return settings;
}

const std::string kDefaultUrl = std::string("https://") + Deployment::kWebHost;

} // namespace

TEST(KestrinSettings, EachConstructionHasItsOwnDefaults) {
    const KestrinSettings plain, copied = KestrinSettings::initWithSettings(nullptr),
                                 byNumber = KestrinSettings::initWithKeyInt(42),
                                 parsed = parse(R"({"baseUrl":"x","loadingBG":"y"})");
    EXPECT_TRUE(kDefaultUrl.starts_with("https://www."));
    for (const KestrinSettings& settings : {plain, copied, byNumber, parsed}) {
        EXPECT_FALSE(settings.getAutoStart() || settings.getTemplateDestroy() ||
                     settings.getTemplateBlocked());
        EXPECT_EQ(settings.getTemplateCommand(), std::nullopt);
        EXPECT_EQ(settings.getApplicationID(), std::nullopt);
        EXPECT_FALSE(settings.getLoadingBackgroundImage().isValid());
    }
    for (const KestrinSettings& settings : {plain, copied, byNumber})
        EXPECT_EQ(settings.getTemplateUrl(), kDefaultUrl);
    EXPECT_TRUE(plain.getDebugEnabled() && copied.getDebugEnabled());
    EXPECT_FALSE(byNumber.getDebugEnabled() || parsed.getDebugEnabled());
}

TEST(KestrinSettings, ReadsEveryMemberByItsTruth) {
    const KestrinSettings all = parse(R"({"autoStart":1,"baseUrl":"https://a/b","destroyTemplate":true,
        "blockTemplate":0.5,"debugEnabled":true,"baseCommand":"!as it is!","more":{}})");
    EXPECT_TRUE(all.getAutoStart() && all.getTemplateDestroy() && all.getTemplateBlocked() &&
                all.getDebugEnabled());
    EXPECT_EQ(all.getTemplateCommand(), "!as it is!");
    EXPECT_EQ(all.getApplicationID(), std::nullopt);
    const KestrinSettings none = parse(R"({"baseUrl":"a","autoStart":"true","destroyTemplate":null,
        "blockTemplate":0,"debugEnabled":[true],"baseCommand":7})");
    EXPECT_FALSE(none.getAutoStart() || none.getTemplateDestroy() || none.getTemplateBlocked() ||
                 none.getDebugEnabled());
    EXPECT_EQ(none.getTemplateCommand(), std::nullopt);
}

TEST(KestrinSettings, BrokenKeyStringsAreInvalid) {
    for (const std::string& broken :
         {std::string(), std::string("not base64!"), keyString("{}").substr(1), keyString("{}") + "\n",
          keyString(R"({"baseUrl":"a"})").insert(4, "\r\n"), keyString(""), keyString("{"), keyString("{}"),
          keyString("[]"), keyString("5"), keyString("\"baseUrl\""), keyString(R"([{"baseUrl":"a"}])"),
          keyString(R"({"baseurl":"a"})"), keyString(R"({"baseUrl":null})"), keyString(R"({"baseUrl":5})"),
          keyString("{\"baseUrl\":\"\xFF\"}"), keyString(std::string(100'000, '['))})
        EXPECT_THROW(KestrinSettings::initWithKeyString(broken), InvalidSettings) << broken.substr(0, 40);
    try {
        KestrinSettings::initWithKeyString(std::nullopt);
        FAIL() << "accepted an absent key string";
    } catch (const InvalidSettings& error) {
        EXPECT_EQ(
            std::string(error.what()),
            std::string("Invalid Settings - Settings Created with Null URL. Build may be corrupt. Contact ") +
                Deployment::kSupportContact + " for more Info.");
    }
}

TEST(KestrinSettings, AddressesBecomeSecure) {
    EXPECT_EQ(urlOf("https://a/?u=http://b"), "https://a/?u=http://b");
    EXPECT_EQ(urlOf("http://a:80/?u=http://b&v=http://c"), "https://a:80/?u=https://b&v=https://c");
    EXPECT_EQ(urlOf("apps.example/t?u=http://b"), "https://apps.example/t?u=http://b");
    EXPECT_EQ(urlOf("ftp://a"), "https://ftp://a");
    EXPECT_EQ(urlOf("HTTPS://a"), "https://HTTPS://a");
    EXPECT_EQ(urlOf("HTTP://a"), "https://HTTP://a");
    EXPECT_EQ(urlOf(""), "https://");
}

TEST(KestrinSettings, CopyingNormalises) {
    KestrinSettings settings = withCommand("[]");
    settings.setTemplateUrl("http://a");
    settings.setAutoStart(true);
    settings.setDestroyTemplateOnDestroy(true);
    settings.setBlockTemplateControl(true);
    settings.setDebugEnabled(false);
    settings.setLoadingBackgroundImage(test::makeImage(2, 2));
    EXPECT_EQ(settings.getTemplateUrl(), "http://a");
    const KestrinSettings copy = KestrinSettings::initWithSettings(&settings);
    EXPECT_EQ(copy.getTemplateUrl(), "https://a");
    EXPECT_EQ(copy.getTemplateCommand(), settings.getTemplateCommand());
    EXPECT_TRUE(copy.getAutoStart() && copy.getTemplateDestroy() && copy.getTemplateBlocked());
    EXPECT_FALSE(copy.getDebugEnabled());
    EXPECT_TRUE(copy.getLoadingBackgroundImage().isValid());
}

TEST(KestrinSettings, TheServerIsTheHostAlone) {
    KestrinSettings settings;
    for (const auto& [url, host] :
         {std::pair("https://apps.example:8443/t/x.html?a=b", "https://apps.example"),
          {"http://u:p@apps.example/", "https://apps.example"},
          {"word", "https://"},
          {"", "https://"},
          {"https://ex ample/", "https://"}}) {
        settings.setTemplateUrl(url);
        EXPECT_EQ(settings.getHostUrl(), host);
    }
}

TEST(KestrinSettings, TheApplicationIsThatOfTheFirstCommand) {
    EXPECT_EQ(withCommand(R"([{"data":{"appID":"a"}},{"data":{"appID":"b"}}])").getApplicationID(), "a");
    EXPECT_EQ(withCommand(R"([{"data":{"appID":12}}])").getApplicationID(), "12");
    for (const char* none : {"", "{", "{}", "[]", "[5]", "[{}]", R"([{"data":"x"}])", R"([{"data":{}}])",
                             R"([{"data":{"appID":null}}])", R"({"data":{"appID":"a"}})"})
        EXPECT_EQ(withCommand(none).getApplicationID(), std::nullopt) << none;
}

TEST(KestrinSettings, TheLocalKeyStringOpensTheLocalTemplate) {
    const KestrinSettings local = KestrinSettings::initWithKeyString(localKeyString());
    const std::string origin = std::string("https://") + Deployment::kApplicationHost;
    EXPECT_EQ(local.getTemplateUrl(), origin + "/themes/sdkLive/local.html");
    EXPECT_EQ(local.getHostUrl(), origin);
    EXPECT_EQ(local.getApplicationID(), Deployment::kLocalApplicationId);
    EXPECT_FALSE(local.getDebugEnabled());
    EXPECT_EQ(base64Decode(*local.getTemplateCommand()),
              R"([{"eventName":"sdkloadapplication","data":{"appID":")" +
                  std::string(Deployment::kLocalApplicationId) + R"(","theme":"card3/www"}}])");
    EXPECT_EQ(base64Decode(localKeyString())->find("{\"baseUrl\":\"https://"), 0U);
}

TEST(KestrinSettings, TheExternalIntentIsOneForAll) {
    EXPECT_EQ(KestrinSettings::externalIntent(), nullptr);
    KestrinSettings::setExternalIntent(std::make_shared<const boost::json::value>("x"));
    EXPECT_EQ(*KestrinSettings::externalIntent(), "x");
    KestrinSettings::setExternalIntent(nullptr);
    EXPECT_EQ(KestrinSettings::externalIntent(), nullptr);
}

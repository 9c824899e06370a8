#include "core/config/KestrinSettings.h"
#include "core/config/Deployment.h"
#include "services/util/Base64.h"

#include <gtest/gtest.h>

using namespace kestrin;

namespace {

KestrinSettings parse(std::string_view json) {
    return KestrinSettings::initWithKeyString(base64Encode(json));
}

} // namespace

TEST(KestrinSettings, ReadsEveryMemberByItsTruth) {
    const KestrinSettings settings = parse(R"({"baseUrl":"a","autoStart":1,"destroyTemplate":"true",
        "blockTemplate":0,"debugEnabled":true,"baseCommand":"!as it is!"})");
    EXPECT_TRUE(settings.getAutoStart() && settings.getDebugEnabled());
    EXPECT_FALSE(settings.getTemplateDestroy() || settings.getTemplateBlocked());
    EXPECT_EQ(settings.getTemplateCommand(), "!as it is!");

    const KestrinSettings plain, byNumber = KestrinSettings::initWithKeyInt(42);
    for (const KestrinSettings& defaults : {plain, KestrinSettings::initWithSettings(nullptr), byNumber})
        EXPECT_EQ(defaults.getTemplateUrl(), std::string("https://") + Deployment::kWebHost);
    EXPECT_TRUE(plain.getDebugEnabled());
    EXPECT_FALSE(byNumber.getDebugEnabled() || parse(R"({"baseUrl":"x"})").getDebugEnabled());
}

TEST(KestrinSettings, BrokenKeyStringsAreInvalid) {
    const std::string reason =
        std::string("Invalid Settings - Settings Created with Null URL. Build may be corrupt. Contact ") +
        Deployment::kSupportContact + " for more Info.";
    const std::string good = base64Encode(R"({"baseUrl":"a"})");
    for (const std::string& broken : {std::string(), good.substr(1), base64Encode(R"({"baseUrl":5})")})
        try {
            KestrinSettings::initWithKeyString(broken);
            ADD_FAILURE() << "accepted " << broken;
        } catch (const InvalidSettings& error) {
            EXPECT_EQ(error.what(), reason);
        }
}

TEST(KestrinSettings, CopyingMakesAddressesSecure) {
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"https://apps.example:8443/?u=http://b", "https://apps.example:8443/?u=http://b",
         "https://apps.example"},
        {"http://u:p@a/?u=http://b", "https://u:p@a/?u=https://b", "https://a"},
        {"https://ex\nample/", "https://ex\nample/", "https://"},
        {"", "https://", "https://"}};
    KestrinSettings settings;
    for (const auto& [url, secure, host] : cases) {
        settings.setTemplateUrl(url);
        EXPECT_EQ(KestrinSettings::initWithSettings(&settings).getTemplateUrl(), secure);
        EXPECT_EQ(KestrinSettings::initWithSettings(&settings).getHostUrl(), host) << url;
    }
}

TEST(KestrinSettings, TheApplicationIsThatOfTheFirstCommand) {
    const std::pair<const char*, std::optional<std::string>> cases[] = {
        {R"([{"data":{"appID":"a"}},{"data":{"appID":"b"}}])", "a"},
        {R"([{"data":"x"}])", {}},
        {R"({"data":{"appID":"a"}})", {}}};
    KestrinSettings settings;
    for (const auto& [command, application] : cases) {
        settings.mCommand = base64Encode(command);
        EXPECT_EQ(settings.getApplicationID(), application) << command;
    }
}

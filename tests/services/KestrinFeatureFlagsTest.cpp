#include "core/config/KestrinFeatureFlags.h"
#include "services/util/Base64.h"
#include "support/FakePlatform.h"

#include <boost/json.hpp>
#include <gmock/gmock.h>

using namespace kestrin;
namespace json = boost::json;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr const char* kAddress =
    "https://a/api/v2/application/id?prune[relationships]=file,scene,page,collection,"
    "applicationbuild";
constexpr const char* kRequested =
    "KestrinFeatureFlags - Sync Feature List from https://a/api/v2/application/"
    "id?prune[relationships]=file,scene,page,collection,applicationbuild";
constexpr const char* kChallenge = "NSURLSession -> Completed HTTPS Challenge";
constexpr const char* kPrinted =
    "KestrinFeatureFlags - Synced feature list, these values can be changed via the CMS.";
constexpr const char* kCalling = "KestrinFeatureFlags - Sync complete, performing callback.";
constexpr const char* kDiverting =
    "KestrinFeatureFlags - syncCallback - Diverting call to main thread. Expect delayed results.";

struct KestrinFeatureFlagsTest : test::PlatformTest {
    KestrinFeatureFlagsTest() {
        system->files.resources["KestrinCache/Features/feature_flags.json"] = R"(["local", "snap"])";
    }
    std::shared_ptr<KestrinFeatureFlags> flags() { return KestrinFeatureFlags::getInstance(); }
    /// The list as the page gets it.
    std::string list() { return base64Decode(flags()->toJson()).value(); }
    void answer(const std::string& featureFlags) {
        const json::value body{{"data", {{"attributes", {{"feature_flags", featureFlags}}}}}};
        system->server.answer(kAddress, json::serialize(body));
    }
    void sync() {
        flags()->sync("https://a", "id");
        takeLog();
        runMain();
    }
    KestrinFeatureFlags::SyncCallback note(const std::string& name) {
        return [this, name] { called.push_back(name); };
    }
    json::value detail() { return json::parse(base64Decode(flags()->getAppDetailBase64()).value()); }

    std::vector<std::string> called;
};

} // namespace

TEST_F(KestrinFeatureFlagsTest, StartsWithThePackagedListAndWaits) {
    EXPECT_TRUE(flags()->containsFlag("local"));
    EXPECT_FALSE(flags()->containsFlag("Local") || flags()->containsFlag("loca"));
    EXPECT_EQ(list(), R"(["local","snap"])");
    flags()->syncCallback(note("a"));
    EXPECT_THAT(called, IsEmpty());
}

TEST_F(KestrinFeatureFlagsTest, BrokenPackagedListsAreEmpty) {
    for (const char* packaged : {"{}", "[", "5", "[]"}) {
        resetSingletons();
        system->files.resources["KestrinCache/Features/feature_flags.json"] = packaged;
        EXPECT_EQ(list(), "[]");
    }
    resetSingletons();
    system->files.resources.clear();
    takeLog();
    EXPECT_EQ(list(), "[]");
    EXPECT_THAT(takeLog(),
                ElementsAre("KestrinUtil::loadJSONBundled::No Bundle Exists, Sending Default Data."));
}

TEST_F(KestrinFeatureFlagsTest, ASyncReplacesTheListAndServesTheNewestWaiter) {
    answer(R"(["photoshare","photoshare",7])");
    flags()->syncCallback(note("a"));
    flags()->syncCallback(note("b"));
    flags()->syncCallback(nullptr);
    flags()->sync("https://a", "id");
    EXPECT_EQ(list(), "[]");
    EXPECT_THAT(takeLog(), ElementsAre(kRequested));
    EXPECT_THAT(called, IsEmpty());
    runMain();
    EXPECT_EQ(list(), R"(["photoshare","photoshare"])");
    EXPECT_THAT(called, ElementsAre("b"));
    EXPECT_THAT(takeLog(), ElementsAre(kChallenge, kPrinted, "photoshare", "photoshare", kCalling));
    flags()->syncCallback(note("c"));
    EXPECT_THAT(called, ElementsAre("b", "c"));
    sync();
    EXPECT_THAT(called, ElementsAre("b", "c"));
}

TEST_F(KestrinFeatureFlagsTest, AFailedSyncReleasesNobodyUntilAskedAgain) {
    for (const char* body : {"", "<html>", "5", R"({"data":)"}) {
        called.clear();
        system->server.answer(kAddress, body);
        flags()->sync("https://a", "id");
        flags()->syncCallback(note("waiter"));
        takeLog();
        runMain();
        EXPECT_THAT(takeLog(), ElementsAre(kChallenge, "KestrinFeatureFlags - Sync failed, no data."));
        EXPECT_EQ(list(), "[]");
        EXPECT_THAT(called, IsEmpty());
        flags()->syncCallback(note("asked again"));
        EXPECT_THAT(called, ElementsAre("asked again"));
    }
}

TEST_F(KestrinFeatureFlagsTest, AnswersWithoutAListAreSyncedAndEmpty) {
    for (const char* body :
         {"{}", "[]", R"({"data":null})", R"({"data":{"attributes":{"feature_flags":["a"]}}})",
          R"({"data":{"attributes":{"feature_flags":"{\"a\":1}"}}})",
          R"({"data":{"attributes":{"feature_flags":"[\"a\""}}})"}) {
        system->server.answer(kAddress, body);
        sync();
        EXPECT_EQ(list(), "[]") << body;
        EXPECT_THAT(takeLog(), ElementsAre(kChallenge, kPrinted)) << body;
    }
}

TEST_F(KestrinFeatureFlagsTest, WithoutAnApplicationTheAddressSaysNull) {
    flags()->sync("https://a", std::nullopt);
    EXPECT_THAT(system->server.requests().back().url,
                testing::StartsWith("https://a/api/v2/application/(null)?"));
}

TEST_F(KestrinFeatureFlagsTest, WaitersFromElsewhereAreCalledOnMain) {
    answer("[]");
    sync();
    takeLog();
    test::offMain([&] { flags()->syncCallback(note("a")); });
    EXPECT_THAT(called, IsEmpty());
    runMain();
    EXPECT_THAT(called, ElementsAre("a"));
    EXPECT_THAT(takeLog(), ElementsAre(kDiverting, kCalling));
}

TEST_F(KestrinFeatureFlagsTest, FlagsAreReadWhileTheyChange) {
    std::thread reader([shared = flags()] {
        for (int i = 0; i < 500; ++i)
            shared->containsFlag("x");
    });
    for (int i = 0; i < 500; ++i) {
        flags()->put("x");
        flags()->clear();
    }
    reader.join();
    EXPECT_EQ(list(), "[]");
}

TEST_F(KestrinFeatureFlagsTest, TheAppDetailDefaultsMemberByMember) {
    flags()->clear();
    system->hardware.identifierForVendor = "0A";
    EXPECT_EQ(detail(), json::parse(R"({"version":"0.0.0","build":"0","bundle_id":"unknown",
        "app_type":"integration","platform":"ios","device_id":"0A","device_type":"Desktop"})"));
    system->files.info["APP_DETAIL"] = base64Encode(R"({"version":[1,2],"app_type":"store","build":null})");
    EXPECT_EQ(detail().at("version"), json::parse("[1,2]"));
    EXPECT_TRUE(detail().at("build").is_null());
    EXPECT_EQ(detail().at("bundle_id"), "unknown");
    EXPECT_EQ(detail().at("app_type"), "store");
    flags()->put("local");
    EXPECT_EQ(detail().at("app_type"), "local");
    for (const std::string& broken : {std::string("x"), base64Encode("[]"), base64Encode("{")}) {
        system->files.info["APP_DETAIL"] = broken;
        EXPECT_EQ(detail().at("version"), "0.0.0");
    }
}

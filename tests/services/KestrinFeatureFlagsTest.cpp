#include "core/config/KestrinFeatureFlags.h"
#include "services/util/Base64.h"
#include "support/FakePlatform.h"

#include <boost/json.hpp>
#include <gmock/gmock.h>

using namespace kestrin;
namespace json = boost::json;
using testing::_;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const std::string kAddress =
    "https://a/api/v2/application/id?prune[relationships]=file,scene,page,collection,applicationbuild";
constexpr const char* kPrinted =
    "KestrinFeatureFlags - Synced feature list, these values can be changed via the CMS.";

struct KestrinFeatureFlagsTest : test::PlatformTest {
    std::shared_ptr<KestrinFeatureFlags> flags() { return KestrinFeatureFlags::getInstance(); }
    void sync(const std::string& answer) {
        system->server.answer(kAddress, answer);
        flags()->sync("https://a", "id");
        runMain();
    }
    KestrinFeatureFlags::SyncCallback note(const std::string& name) {
        return [this, name] { called.push_back(name); };
    }
    json::value detail() { return json::parse(base64Decode(flags()->getAppDetailBase64()).value()); }

    std::vector<std::string> called;
};

} // namespace

TEST_F(KestrinFeatureFlagsTest, ASyncReplacesThePackagedListAndServesTheNewestWaiter) {
    system->files.resources["KestrinCache/Features/feature_flags.json"] = R"(["local", "snap"])";
    EXPECT_TRUE(flags()->containsFlag("local"));
    EXPECT_FALSE(flags()->containsFlag("Local") || flags()->containsFlag("loca"));
    for (const char* name : {"a", "b"})
        flags()->syncCallback(note(name));
    sync(R"({"data":{"attributes":{"feature_flags":"[\"photoshare\",\"photoshare\",7]"}}})");
    EXPECT_EQ(flags()->toJson(), base64Encode(R"(["photoshare","photoshare"])"));
    EXPECT_THAT(called, ElementsAre("b"));
    EXPECT_THAT(takeLog(), ElementsAre("KestrinFeatureFlags - Sync Feature List from " + kAddress, _,
                                       kPrinted, "photoshare", "photoshare",
                                       "KestrinFeatureFlags - Sync complete, performing callback."));

    test::offMain([&] { flags()->syncCallback(note("c")); });
    EXPECT_THAT(called, ElementsAre("b"));
    runMain();
    EXPECT_THAT(called, ElementsAre("b", "c"));
    EXPECT_EQ(takeLog().front(), "KestrinFeatureFlags - syncCallback - Diverting call to main thread. "
                                 "Expect delayed results.");
}

TEST_F(KestrinFeatureFlagsTest, AFailedSyncReleasesNobodyUntilAskedAgain) {
    flags()->put("dropped");
    flags()->syncCallback(note("waiter"));
    for (const char* body : {"", "5"}) {
        sync(body);
        EXPECT_EQ(takeLog().back(), "KestrinFeatureFlags - Sync failed, no data.");
    }
    EXPECT_THAT(called, IsEmpty());
    EXPECT_FALSE(flags()->containsFlag("dropped"));
    flags()->syncCallback(note("asked again"));
    EXPECT_THAT(called, ElementsAre("asked again"));
    for (const char* body : {"[]", R"({"data":{"attributes":{"feature_flags":["a"]}}})"}) {
        sync(body);
        EXPECT_EQ(takeLog().back(), kPrinted) << body;
    }
}

TEST_F(KestrinFeatureFlagsTest, TheAppDetailDefaultsMemberByMember) {
    system->hardware.identifierForVendor = "0A";
    for (const char* broken : {"x", "W10=", "ew=="}) {
        system->files.info["APP_DETAIL"] = broken;
        EXPECT_EQ(detail(), json::parse(R"({"version":"0.0.0","build":"0","bundle_id":"unknown",
            "app_type":"integration","platform":"ios","device_id":"0A","device_type":"Desktop"})"));
    }
    system->files.info["APP_DETAIL"] = base64Encode(R"({"version":[1,2],"app_type":"store"})");
    flags()->put("local");
    EXPECT_EQ(detail().at("version"), json::parse("[1,2]"));
    EXPECT_EQ(detail().at("app_type"), "local");
}

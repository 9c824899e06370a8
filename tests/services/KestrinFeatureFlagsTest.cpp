#include "core/config/KestrinFeatureFlags.h"
#include "services/util/Base64.h"
#include "support/FakePlatform.h"

#include <gmock/gmock.h>

using namespace kestrin;
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

    std::vector<std::string> called;
};

} // namespace

TEST_F(KestrinFeatureFlagsTest, ASyncReplacesThePackagedListAndServesTheNewestWaiter) {
    system->files.resources["KestrinCache/Features/feature_flags.json"] = R"(["local", "snap"])";
    EXPECT_TRUE(flags()->containsFlag("local"));
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
}

#include "services/KestrinQRScanner.h"
#include "core/config/KestrinFeatureFlags.h"
#include "support/FakePixelBuffer.h"
#include "support/FakePlatform.h"

#include <gmock/gmock.h>

using namespace kestrin;
using namespace kestrin::platform;
using testing::ElementsAre;

struct KestrinQRScannerTest : test::PlatformTest {
    const PixelBufferRef blank = std::make_shared<test::FakePixelBuffer>(64, 48);
    const PixelBufferRef pair = std::make_shared<test::FakePixelBuffer>(64, 48);
    const PixelBufferRef wordless = std::make_shared<test::FakePixelBuffer>(64, 48);
    std::vector<std::string> once, always;

    KestrinQRScannerTest() {
        system->eyes.show(pair, {{"left"}, {std::nullopt}, {"right"}});
        system->eyes.show(wordless, {{std::nullopt}});
        KestrinFeatureFlags::getInstance()->put("qrscanner");
    }
    KestrinQRScanner::Callback into(std::vector<std::string>& texts) {
        return [this, &texts](const std::string& text) {
            EXPECT_TRUE(system->queues.isMain());
            texts.push_back(text);
        };
    }
    /// Gives the pictures all at once, as a session does.
    void show(std::initializer_list<PixelBufferRef> pictures) {
        for (const PixelBufferRef& picture : pictures)
            KestrinQRScanner::getInstance()->onScan(picture, PictureOrientation::up);
        system->queues.runWorkers();
        runMain();
    }
};

TEST_F(KestrinQRScannerTest, OneShotHearsTheFirstPictureAndRealtimeAll) {
    const auto scanner = KestrinQRScanner::getInstance();
    EXPECT_FALSE(scanner->wantsScan());
    scanner->scan([](const std::string&) { FAIL() << "replaced"; });
    scanner->scan(into(once));
    show({blank, nullptr});
    EXPECT_TRUE(scanner->wantsScan());
    show({pair, pair, pair});
    EXPECT_THAT(once, ElementsAre("left", "right"));
    EXPECT_FALSE(scanner->wantsScan());

    scanner->scan(into(once));
    scanner->startRealtimeScan(into(always));
    show({wordless, pair, blank, pair});
    EXPECT_EQ(once.size(), 2U) << "a code without a text disarms too";
    EXPECT_THAT(always, ElementsAre("left", "right", "left", "right"));

    scanner->scan(into(once));
    scanner->stopRealtimeScan();
    EXPECT_TRUE(scanner->wantsScan());
    scanner->cancelScan();
    EXPECT_FALSE(scanner->wantsScan());
    show({pair});
    EXPECT_EQ(once.size() + always.size(), 6U);
    EXPECT_EQ(pair.use_count(), 1) << "pictures are let go";
}

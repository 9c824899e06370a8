#include "services/KestrinQRScanner.h"
#include "core/config/KestrinFeatureFlags.h"
#include "support/FakePixelBuffer.h"
#include "support/FakePlatform.h"

#include <gmock/gmock.h>

using namespace kestrin;
using namespace kestrin::platform;
using testing::ElementsAre;
using Texts = std::vector<std::string>;

struct KestrinQRScannerTest : test::PlatformTest {
    const PixelBufferRef blank = std::make_shared<test::FakePixelBuffer>(64, 48);
    const PixelBufferRef pair = std::make_shared<test::FakePixelBuffer>(64, 48);
    const PixelBufferRef wordless = std::make_shared<test::FakePixelBuffer>(64, 48);
    Texts once, always;

    KestrinQRScannerTest() {
        KestrinFeatureFlags::getInstance()->put("qrscanner");
        system->eyes.show(pair, {{"left"}, {std::nullopt}, {"right"}});
        system->eyes.show(wordless, {{std::nullopt}});
    }
    static KestrinQRScanner::Callback into(Texts& texts) {
        return [&texts](const std::string& text) {
            EXPECT_TRUE(platform::platform().dispatch().isMain());
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

TEST_F(KestrinQRScannerTest, SupportIsFixedAtFirstUse) {
    KestrinFeatureFlags::getInstance()->clear();
    const auto without = KestrinQRScanner::getInstance();
    KestrinFeatureFlags::getInstance()->put("qrscanner");
    without->scan(into(once));
    without->startRealtimeScan(into(always));
    EXPECT_TRUE(KestrinQRScanner::isSupported());
    EXPECT_FALSE(without->wantsScan());
    show({pair});
    EXPECT_EQ(system->eyes.looks(), 0);

    resetSingletons();
    KestrinFeatureFlags::getInstance()->put("qrscanner");
    system->level = 10.3;
    EXPECT_FALSE(KestrinQRScanner::getInstance()->supported()) << "on an old system";
    system->level = 11.0;
    resetSingletons();
    KestrinFeatureFlags::getInstance()->put("qrscanner");
    EXPECT_TRUE(KestrinQRScanner::getInstance()->supported());
}

TEST_F(KestrinQRScannerTest, OneShotHearsAllOfTheFirstPictureWithACode) {
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
    show({wordless, pair});
    EXPECT_EQ(once.size(), 2U) << "a code without a text disarms too";
}

TEST_F(KestrinQRScannerTest, RealtimeHearsEverythingUntilStopped) {
    const auto scanner = KestrinQRScanner::getInstance();
    scanner->scan(into(once));
    scanner->startRealtimeScan(into(always));
    show({pair, blank, pair});
    EXPECT_THAT(always, ElementsAre("left", "right", "left", "right"));
    EXPECT_EQ(once.size(), 2U);

    scanner->scan(into(once));
    scanner->stopRealtimeScan();
    EXPECT_TRUE(scanner->wantsScan());
    scanner->cancelScan();
    EXPECT_FALSE(scanner->wantsScan());
    show({pair});
    EXPECT_EQ(always.size(), 4U);
    EXPECT_EQ(once.size(), 2U);
    EXPECT_EQ(pair.use_count(), 1) << "pictures are let go";
}

#include "services/KestrinImage.h"
#include "support/FakePlatform.h"

#include <gmock/gmock.h>

using namespace kestrin;
using namespace kestrin::platform;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

struct KestrinImageTest : test::PlatformTest {
    static std::shared_ptr<KestrinImage> picture(int width, int height, std::uint8_t level) {
        return KestrinImage::initWithImage(test::makeImage(width, height, level));
    }
    void save(const KestrinImage& image) {
        image.saveIntoCameraRoll();
        system->queues.runWorkers();
        runMain();
    }
};

} // namespace

TEST_F(KestrinImageTest, CombinesByStretchingBoth) {
    system->app.screen.nativeScale = 2;
    EXPECT_EQ(KestrinImage::initBlank()->getImage().size(), (Size{36, 36}));
    for (const auto& missing :
         {std::shared_ptr<KestrinImage>(), KestrinImage::initWithBase64String("data:,no")})
        EXPECT_EQ(KestrinImage::combineWithImage(picture(1, 1, 9), missing), nullptr);
    EXPECT_THAT(
        takeLog(),
        ElementsAre("KestrinImage::combineWithImage::One of the Parameters was NULL. Unable to Proceed. "
                    "Returning nil.",
                    "KestrinImage::combineWithImage::One of the Images was Invalid. Unable to Proceed. "
                    "Returning nil. first=1 second=0"));
    // Only the right half of the upper picture lets the lower one through.
    const auto upper = KestrinImage::initWithImage({2, 1, {70, 70, 70, 255, 0, 0, 0, 0}, 0.02});
    const auto both = KestrinImage::combineWithImage(picture(10, 50, 200), upper);
    const Image& image = both->getImage();
    EXPECT_EQ(image.pixelWidth(), 200);
    EXPECT_EQ(image.pixelHeight(), 100);
    EXPECT_EQ(image.pixels()[0], 70);
    EXPECT_EQ(image.pixels().back(), 200) << "stretched to the far corner";
}

TEST_F(KestrinImageTest, SavesAndSaysHowItEnded) {
    const std::string head = "KestrinImage::saveIntoCameraRollAfterPermission::";
    save(*KestrinImage::initWithImage({}));
    save(*picture(4, 3, 1));
    EXPECT_THAT(
        takeLog(),
        ElementsAre("KestrinImage::saveIntoCameraRoll::Unable to save NULL Image. Nothing Saved. Returning.",
                    "KestrinImage -> Performing Save Functionality",
                    head + "Saving Image width=4.000000 height=3.000000",
                    head + "Image Saved Successfully."));
    system->files.photoFailure = "No space left";
    save(*picture(4, 3, 1));
    EXPECT_EQ(takeLog().back(), head + "Image Saving Failed::reason= No space left");
    system->person.photoStatus = Authorization::limited;
    save(*picture(4, 3, 1));
    ASSERT_EQ(system->app.alerts.size(), 1U);
    EXPECT_THAT(system->app.alerts[0].message, HasSubstr("Turn on Gallery Access"));
    EXPECT_EQ(system->files.photos().size(), 1U);
}

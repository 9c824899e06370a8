#include "CaptureTest.h"
#include "linux/capture/CaptureMode.h"
#include "linux/capture/ModeText.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <thread>

namespace kestrin::gtk {
namespace {

using namespace platform;
using testing::ElementsAre;
using testing::HasSubstr;

/// Runs a pipeline of the test's own to its end.
void make(const std::string& description) {
    const auto pipeline = GRef<GstElement>::refSink(gst_parse_launch(description.c_str(), nullptr));
    ASSERT_TRUE(pipeline);
    gst_element_set_state(pipeline.get(), GST_STATE_PLAYING);
    const auto bus = GRef<GstBus>::adopt(gst_element_get_bus(pipeline.get()));
    GstMessage* end = gst_bus_timed_pop_filtered(bus.get(), 30 * GST_SECOND,
                                                 GstMessageType(GST_MESSAGE_EOS | GST_MESSAGE_ERROR));
    ASSERT_TRUE(end);
    EXPECT_EQ(GST_MESSAGE_TYPE(end), GST_MESSAGE_EOS);
    gst_message_unref(end);
    gst_element_set_state(pipeline.get(), GST_STATE_NULL);
}

std::array<int, 3> pixel(const PixelBuffer& picture, int x, int y) {
    const PixelPlane luma = picture.plane(0), chroma = picture.plane(1);
    const std::uint8_t* pair = chroma.data + y / 2 * chroma.stride + x / 2 * 2;
    return {luma.data[y * luma.stride + x], pair[0], pair[1]};
}

TEST_F(CaptureTest, TheTestPictureHasTheFullRange) {
    ASSERT_TRUE(open("test"));
    access().start();
    ASSERT_TRUE(consumer->waitFor(4));
    access().stop();
    EXPECT_EQ(consumer->size, (Size{640, 480}));
    EXPECT_EQ(pixel(*consumer->newest, 160, 470)[0], 255) << "the white field";
    const auto red = pixel(*consumer->newest, 500, 100);
    EXPECT_NEAR(red[1], 85, 2);
    EXPECT_GE(red[2], 253) << "Cr is the second of the pair";
    EXPECT_TRUE(std::ranges::is_sorted(consumer->times));

    const std::size_t before = consumer->count();
    const double stopped = consumer->times.back();
    std::this_thread::sleep_for(std::chrono::milliseconds(150));
    EXPECT_LE(consumer->count(), before + 1) << "one may have been under way";
    access().start();
    ASSERT_TRUE(consumer->waitFor(before + 3));
    EXPECT_GT(consumer->times.back(), stopped + 0.1) << "time goes on";
    access().deinitialise();
    access().stop();
    ASSERT_TRUE(reopen()) << lastLine();
}

TEST_F(CaptureTest, DropsLatePicturesAndThoseBeyondItsPool) {
    ASSERT_TRUE(open("test"));
    consumer->delay = std::chrono::milliseconds(200);
    access().start();
    ASSERT_TRUE(consumer->waitFor(3));
    EXPECT_GT(consumer->times[2] - consumer->times[1], 0.15) << "none waits while another is taken";
    consumer->delay = std::chrono::milliseconds(0);
    consumer->keeps = true;
    const auto longAfter = [this] {
        std::this_thread::sleep_for(std::chrono::seconds(1));
        const std::lock_guard lock(consumer->mutex);
        return consumer->kept.size();
    };
    EXPECT_LE(longAfter(), 8U);
    const std::size_t before = consumer->count();
    {
        const std::lock_guard lock(consumer->mutex);
        consumer->keeps = false;
        consumer->kept.clear();
    }
    EXPECT_TRUE(consumer->waitFor(before + 3)) << "and go on";
}

TEST_F(CaptureTest, AFilePlaysAgainAndAgainInFullRange) {
    const kestrin::test::TemporaryFolder folder;
    const std::string clip = folder / "clip.mkv";
    struct Case {
        std::string pattern, colours;
        std::array<int, 3> expected;
    };
    for (const auto& [pattern, colours, expected] :
         {Case{"white", "bt601", {255, 128, 128}}, Case{"red", "bt709", {77, 85, 255}}}) {
        make("videotestsrc num-buffers=5 pattern=" + pattern +
             " ! video/x-raw,format=I420,width=322,height=240,framerate=20/1,colorimetry=" + colours +
             " ! matroskamux ! filesink location=" + clip);
        ASSERT_TRUE(open("file:" + clip)) << lastLine();
        access().start();
        ASSERT_TRUE(consumer->waitFor(13));
        access().stop();
        EXPECT_EQ(consumer->size, (Size{322, 240}));
        EXPECT_EQ(pixel(*consumer->newest, 101, 101), expected) << colours;
        EXPECT_TRUE(std::ranges::is_sorted(consumer->times));
        EXPECT_GT(consumer->times[12] - consumer->times[0], 0.5) << "at its own pace";
    }
}

TEST_F(CaptureTest, TakesTheModeNearestToTheSizeAskedFor) {
    const auto mode = [](const char* offered, double slowest) {
        const GstCapsPtr caps(gst_caps_from_string(offered));
        const GstCapsPtr chosen = captureMode(caps.get(), 640, 480, slowest);
        const GText text(gst_caps_to_string(chosen.get()));
        return std::pair{std::string(text.get()), frameRates(chosen.get())};
    };
    const char* webcam = "image/jpeg,width=1920,height=1080,framerate=30/1;"
                         "video/x-raw,format=YUY2,width=640,height=480,framerate={30/1,15/1,5/1};"
                         "video/x-h264,width=640,height=480,framerate=60/1;"
                         "image/jpeg,width=640,height=480,framerate=[5/1,30/1]";
    EXPECT_THAT(mode(webcam, 10).second,
                ElementsAre(FrameRateRange{30, 30}, FrameRateRange{15, 15}, FrameRateRange{10, 30}));
    EXPECT_THAT(mode("video/x-raw,width=[160,4000],height=[120,3000],framerate=5/1", 10).first,
                testing::AllOf(HasSubstr("width=(int)640"), HasSubstr("height=(int)480"), HasSubstr("5/1")));
    EXPECT_FALSE(captureMode(nullptr, 640, 480, 0));
    const GstCapsPtr caps(gst_caps_from_string(webcam));
    EXPECT_THAT(modeTexts(caps.get()), ElementsAre("JPEG 1920x1080 (30), 640x480 (5..30)",
                                                   "YUY2 640x480 (30, 15, 5)", "H264 640x480 (60)"));
}

} // namespace
} // namespace kestrin::gtk

// kestrin-view with a camera, as a person runs it where there is none: generated, or a file.

#include "Program.h"

#include "support/TemporaryFolder.h"

#include <gdk-pixbuf/gdk-pixbuf.h>

#include <algorithm>
#include <array>

namespace kestrin::test {

namespace {

const std::string kPage = KESTRIN_WEB_DIST "/demo";

std::array<int, 3> pixel(GdkPixbuf* picture, int x, int y) {
    const guchar* at = gdk_pixbuf_read_pixels(picture) + y * gdk_pixbuf_get_rowstride(picture) +
                       x * gdk_pixbuf_get_n_channels(picture);
    return {at[0], at[1], at[2]};
}

TEST(CameraProgram, SaysInOneLineWhichCameraItCannotShow) {
    const TemporaryFolder folder;
    folder.write("text.mkv", "no video");
    const std::string text = folder / "text.mkv";
    expectRefused(KESTRIN_VIEW,
                  {{{"--page", kPage, "--camera", "one that nobody has"}, "--camera: there is no"},
                   {{"--page", kPage, "--camera", "file:/no/such.mkv"}, "/no/such.mkv"},
                   {{"--page", kPage, "--camera", "file:" + text}, "text.mkv: "},
                   {{"--page", kPage, "--camera", "test", "--camera-size", "8"}, "--camera-size"},
                   {{"--page", kPage, "--camera", "test", "--session", "simulate"}, "--camera"},
                   {{"--page", kPage, "--camera", "test", "--step"}, "--step"},
                   {{"--page", kPage, "--mirror"}, "--mirror"}});
    const Outcome listed = runProgram(KESTRIN_VIEW, {"--list-cameras"});
    EXPECT_EQ(listed.status, 0);
    EXPECT_FALSE(listed.out.empty());
}

/// The window after so many frames: that of a slow machine may still show that it loads.
gtk::GRef<GdkPixbuf> shown(const char* frames) {
    const TemporaryFolder folder;
    const std::string file = folder / "camera.png";
    const Outcome outcome =
        runProgram(KESTRIN_VIEW, {"--page", kPage, "--camera", "test", "--mirror", "--size", "320x240",
                                  "--frames", frames, "--log-level", "off", "--screenshot", file});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    return gtk::GRef<GdkPixbuf>::adopt(gdk_pixbuf_new_from_file(file.c_str(), nullptr));
}

TEST(CameraProgram, ShowsTheCameraBehindThePage) {
    bool isBlueLeft = false, isWhiteRight = false; // as in a mirror
    for (const char* frames : {"90", "300", "900"}) {
        const auto picture = shown(frames);
        ASSERT_TRUE(picture);
        const auto left = pixel(picture.get(), 10, 100), right = pixel(picture.get(), 310, 100);
        isBlueLeft = left[0] < 20 && left[1] < 20 && left[2] > 235;
        isWhiteRight = *std::ranges::min_element(right) > 235;
        if (isBlueLeft)
            break;
    }
    EXPECT_TRUE(isBlueLeft && isWhiteRight);
}

} // namespace

} // namespace kestrin::test

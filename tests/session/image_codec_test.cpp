#include "linux/storage/PixbufCodec.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace kestrin::gtk::test {

namespace {

using platform::Image;
using Bytes = std::vector<std::uint8_t>;

/// Red to the right, green downwards.
Image slope(int width, int height) {
    Bytes pixels;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            pixels.insert(pixels.end(),
                          {std::uint8_t(255 * x / width), std::uint8_t(255 * y / height), 40, 255});
    return {width, height, std::move(pixels)};
}

/// The file with a note that its picture is to be shown turned by a quarter, clockwise.
Bytes turned(Bytes jpeg) {
    const std::string note("\xFF\xE1\0\x22"
                           "Exif\0\0II*\0\b\0\0\0\1\0\x12\1\3\0\1\0\0\0\6\0\0\0\0\0\0\0",
                           36);
    jpeg.insert(jpeg.begin() + 2, note.begin(), note.end());
    return jpeg;
}

TEST(PixbufCodec, JpegComesBackNearlyTheSameInTheSizeAskedFor) {
    const PixbufCodec codec;
    struct {
        int width, height;
        std::int64_t most;
        bool isTurned;
        int gotWidth, gotHeight;
    } const cases[] = {{67, 41, 67 * 41, false, 67, 41}, {1501, 1000, 300'000, true, 333, 500}};
    for (const auto& c : cases) {
        const Bytes jpeg = codec.encodeJpeg(slope(c.width, c.height), 0.95);
        const Image back = codec.decode(c.isTurned ? turned(jpeg) : jpeg, c.most);
        ASSERT_EQ(back.pixelWidth(), c.gotWidth);
        ASSERT_EQ(back.pixelHeight(), c.gotHeight);
        const platform::Size size{double(c.width), double(c.height)};
        EXPECT_EQ(back.size(), c.isTurned ? (platform::Size{size.height, size.width}) : size);
        double error = 0;
        for (int y = 0; y < c.gotHeight; ++y)
            for (int x = 0; x < c.gotWidth; ++x) {
                const double right = 255 * (x + 0.5) / c.gotWidth, down = 255 * (y + 0.5) / c.gotHeight;
                const std::uint8_t* pixel = &back.pixels()[std::size_t(y * c.gotWidth + x) * 4];
                error += std::abs(pixel[0] - (c.isTurned ? down : right));
                error += std::abs(pixel[1] - (c.isTurned ? 255 - right : down));
                error += std::abs(pixel[2] - 40) + std::abs(pixel[3] - 255);
            }
        EXPECT_LT(error / c.gotWidth / c.gotHeight, 8) << c.gotWidth;
    }
}

TEST(PixbufCodec, WhatIsNoPictureGivesNone) {
    const PixbufCodec codec;
    const std::string words = "This is not a picture, however long one looks at it.";
    EXPECT_FALSE(codec.decode({}).isValid());
    EXPECT_FALSE(codec.decode(Bytes(words.begin(), words.end())).isValid());
    // The smallest of its kind: one pixel.
    const std::string png("\x89PNG\r\n\x1a\n"
                          "\0\0\0\rIHDR\0\0\0\1\0\0\0\1\b\0\0\0\0\x3a\x7e\x9b\x55"
                          "\0\0\0\nIDAT\x78\x9c\x63\x60\0\0\0\2\0\1\x48\xaf\xa4\x71"
                          "\0\0\0\0IEND\xae\x42\x60\x82",
                          67);
    const Bytes jpeg = codec.encodeJpeg(slope(64, 64), 0.9);
    for (const Bytes& whole : {Bytes(png.begin(), png.end()), jpeg, turned(jpeg)}) {
        EXPECT_TRUE(codec.decode(whole).isValid());
        for (std::size_t eighths = 1; eighths < 8; ++eighths)
            EXPECT_FALSE(codec.decode(std::span(whole).first(whole.size() * eighths / 8)).isValid());
    }
    const std::string drawing = R"(<svg xmlns="http://www.w3.org/2000/svg" width="30000" height="30000"/>)";
    EXPECT_FALSE(codec.decode(Bytes(drawing.begin(), drawing.end())).isValid());
}

} // namespace

} // namespace kestrin::gtk::test

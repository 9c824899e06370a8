#include "linux/storage/PixbufCodec.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
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
    } const cases[] = {{67, 41, 67 * 41, false, 67, 41},
                       {67, 41, 99'999, true, 41, 67},
                       {1501, 1000, 300'000, false, 563, 375},
                       {1501, 1000, 3'000, false, 62, 41},
                       {1501, 1000, 300'000, true, 333, 500}};
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

TEST(PixbufCodec, TheBestQualityKeepsTheColourOfEachPixel) {
    Bytes pixels;
    for (int i = 0; i < 16 * 16; ++i) {
        const bool red = (i + i / 16) % 2 == 0;
        pixels.insert(pixels.end(), {std::uint8_t(red ? 200 : 40), 40, std::uint8_t(red ? 40 : 200), 255});
    }
    const PixbufCodec codec;
    const Image back = codec.decode(codec.encodeJpeg({16, 16, pixels}, 100));
    for (std::size_t i = 0; i < pixels.size(); ++i)
        ASSERT_NEAR(back.pixels()[i], pixels[i], 6) << i;
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
    // The smallest form that a picture of more than 64 million pixels has.
    const auto bitmap = [](int width, int height) {
        std::string text = "P4\n" + std::to_string(width) + " " + std::to_string(height) + "\n";
        text.resize(text.size() + std::size_t((width + 7) / 8 * height), 0x55);
        return Bytes(text.begin(), text.end());
    };
    EXPECT_TRUE(codec.decode(bitmap(650, 11)).isValid());
    EXPECT_FALSE(codec.decode(bitmap(65000, 1100)).isValid());
    const std::string drawing = R"(<svg xmlns="http://www.w3.org/2000/svg" width="30000" height="30000"/>)";
    EXPECT_FALSE(codec.decode(Bytes(drawing.begin(), drawing.end())).isValid());
}

TEST(PixbufCodec, DrawsPicturesOverEachOther) {
    const PixbufCodec codec;
    const auto solid = [](int width, int height, const Bytes& color) {
        Bytes pixels;
        for (int i = 0; i < width * height; ++i)
            pixels.insert(pixels.end(), color.begin(), color.end());
        return Image(width, height, std::move(pixels));
    };
    const auto at = [](const Image& image, int x, int y) {
        const auto pixels = image.pixels().subspan(std::size_t(y * image.pixelWidth() + x) * 4, 4);
        return Bytes(pixels.begin(), pixels.end());
    };
    const Bytes red{255, 0, 0, 255}, clear{0, 0, 0, 0};
    // Stretched to the very edge; a faint layer above; what shows nothing spoils nothing.
    const platform::ImageLayer layers[] = {{solid(3, 2, red), {{}, {10, 10}}},
                                           {solid(3, 2, red), {{}, {0, 10}}},
                                           {solid(5, 5, {0, 0, 255, 51}), {{5, 0}, {5, 5}}}};
    const Image drawn = codec.compose({10, 20}, false, 2, layers);
    ASSERT_EQ(drawn.pixels().size(), 20U * 40 * 4);
    EXPECT_EQ(at(drawn, 0, 0), red);
    EXPECT_EQ(at(drawn, 19, 19), red);
    EXPECT_EQ(at(drawn, 12, 5), (Bytes{204, 0, 51, 255}));
    EXPECT_EQ(at(drawn, 0, 20), clear);
    EXPECT_EQ(at(codec.compose({10, 20}, true, 2, layers), 0, 20), (Bytes{0, 0, 0, 255}));
    // A quarter of a turn, clockwise.
    const platform::ImageLayer turned{slope(8, 8), {{-4, -4}, {8, 8}}, {0, 1, -1, 0, 4, 4}};
    EXPECT_EQ(at(codec.compose({8, 8}, false, 1, {&turned, 1}), 7, 0), at(slope(8, 8), 0, 0));
    for (const platform::Size& size : {platform::Size{0, 5}, {-3, 5}, {1e9, 1}, {9000, 9000}, {NAN, 4}})
        EXPECT_FALSE(codec.compose(size, false, 1, {}).isValid());
}

} // namespace

} // namespace kestrin::gtk::test

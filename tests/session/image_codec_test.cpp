#include "linux/storage/PixbufCodec.h"

#include <gtest/gtest.h>

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

TEST(PixbufCodec, JpegComesBackNearlyTheSame) {
    const PixbufCodec codec;
    const Image image = slope(67, 41);
    const Image back = codec.decode(codec.encodeJpeg(image, 0.95));
    ASSERT_EQ(back.pixelWidth(), 67);
    ASSERT_EQ(back.pixelHeight(), 41);
    double error = 0;
    for (std::size_t i = 0; i < image.pixels().size(); ++i)
        error += std::abs(image.pixels()[i] - back.pixels()[i]);
    EXPECT_LT(error / double(image.pixels().size()), 2);
}

TEST(PixbufCodec, WhatIsNoPictureGivesNone) {
    const PixbufCodec codec;
    const std::string words = "This is not a picture, however long one looks at it.";
    EXPECT_FALSE(codec.decode({}).isValid());
    EXPECT_FALSE(codec.decode(Bytes(words.begin(), words.end())).isValid());
    const Bytes jpeg = codec.encodeJpeg(slope(64, 64), 0.9);
    EXPECT_FALSE(codec.decode(std::span(jpeg).first(jpeg.size() / 8)).isValid());
    // The smallest form that a picture of more than 64 million pixels has.
    const auto bitmap = [](int width, int height) {
        std::string text = "P4\n" + std::to_string(width) + " " + std::to_string(height) + "\n";
        text.resize(text.size() + std::size_t((width + 7) / 8 * height), 0x55);
        return Bytes(text.begin(), text.end());
    };
    EXPECT_TRUE(codec.decode(bitmap(650, 11)).isValid());
    EXPECT_FALSE(codec.decode(bitmap(65000, 1100)).isValid());
}

} // namespace

} // namespace kestrin::gtk::test

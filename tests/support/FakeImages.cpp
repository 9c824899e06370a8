#include "support/FakeImages.h"

#include <algorithm>
#include <cmath>
#include <sstream>
#include <string>

namespace kestrin::test {

platform::Image FakeImageCodec::decode(std::span<const std::uint8_t> bytes, std::int64_t mostPixels) const {
    std::istringstream in(std::string(bytes.begin(), bytes.end()));
    int width = 0, height = 0;
    if (!(in >> width >> height) || in.get() != ' ')
        return {};
    const auto rest = bytes.subspan(std::size_t(in.tellg()));
    return platform::Image(width, height, {rest.begin(), rest.end()}).shrunk(mostPixels);
}

std::vector<std::uint8_t> FakeImageCodec::encodeJpeg(const platform::Image& image, double) const {
    if (!image.isValid())
        return {};
    const std::string head =
        std::to_string(image.pixelWidth()) + " " + std::to_string(image.pixelHeight()) + " ";
    std::vector<std::uint8_t> bytes(head.begin(), head.end());
    bytes.insert(bytes.end(), image.pixels().begin(), image.pixels().end());
    return bytes;
}

namespace {

/// What a layer shows at a point of the canvas: four channels, or null.
const std::uint8_t* pixelAt(const platform::ImageLayer& layer, const platform::Point& onCanvas) {
    const auto [x, y] = inverse(layer.transform) * onCanvas;
    const double right = (x - layer.rect.origin.x) / layer.rect.size.width;
    const double down = (y - layer.rect.origin.y) / layer.rect.size.height;
    if (!layer.image.isValid() || !(right >= 0 && right < 1 && down >= 0 && down < 1))
        return nullptr;
    const auto column = std::size_t(right * layer.image.pixelWidth());
    const auto row = std::size_t(down * layer.image.pixelHeight());
    return &layer.image.pixels()[(row * std::size_t(layer.image.pixelWidth()) + column) * 4];
}

} // namespace

platform::Image FakeImageCodec::compose(const platform::Size& size, bool opaque, double scale,
                                        std::span<const platform::ImageLayer> layers) const {
    const auto width = std::size_t(std::lround(size.width * scale));
    const auto height = std::size_t(std::lround(size.height * scale));
    std::vector<std::uint8_t> pixels(width * height * 4);
    for (std::size_t i = 0; i < pixels.size(); i += 4) {
        pixels[i + 3] = opaque ? 255 : 0;
        const platform::Point at{(double(i / 4 % width) + 0.5) / scale,
                                 (double(i / 4 / width) + 0.5) / scale};
        for (const auto& layer : layers)
            if (const std::uint8_t* seen = pixelAt(layer, at); seen && seen[3])
                std::copy_n(seen, 4, &pixels[i]);
    }
    return {int(width), int(height), std::move(pixels), scale};
}

platform::Image makeImage(int width, int height, std::uint8_t level) {
    return {width, height, std::vector<std::uint8_t>(std::size_t(width) * std::size_t(height) * 4, level)};
}

} // namespace kestrin::test

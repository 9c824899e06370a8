#include "session/Texture.h"

#include "session/Patterns.h"
#include "session/Prints.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace kestrin::session {

namespace {

struct Maker {
    std::string_view name;
    float tile; ///< metres a repeat
    int width, height;
    Color (*colorAt)(Point2 point);
};

constexpr std::array kMakers{
    Maker{"plain", 1, 4, 4, plain},           Maker{"plaster", 1.5F, 256, 256, plaster},
    Maker{"planks", 1.6F, 256, 512, planks},  Maker{"oak", 0.8F, 256, 256, oak},
    Maker{"tiles", 0.6F, 256, 256, tiles},    Maker{"carpet", 0.5F, 256, 256, carpet},
    Maker{"fabric", 0.2F, 256, 256, fabric},  Maker{"checker", 0.4F, 64, 64, checker},
    Maker{"rug", 0, 400, 300, rug},           Maker{"books", 0, 512, 128, books},
    Maker{"view", 0, 224, 224, view},         Maker{"poster", 0, 258, 344, poster},
    Maker{"postcard", 0, 372, 248, postcard},
};

const Maker* find(std::string_view name) {
    const auto found =
        std::find_if(kMakers.begin(), kMakers.end(), [&](const Maker& m) { return m.name == name; });
    return found == kMakers.end() ? nullptr : &*found;
}

std::uint8_t toByte(float value) { return std::uint8_t(255 * std::clamp(value, 0.0F, 1.0F) + 0.5F); }

platform::Image make(const Maker& maker) {
    std::vector<std::uint8_t> pixels;
    pixels.reserve(std::size_t(maker.width * maker.height) * 4);
    for (int y = 0; y < maker.height; ++y)
        for (int x = 0; x < maker.width; ++x) {
            const Point2 point{(float(x) + 0.5F) / float(maker.width),
                               (float(y) + 0.5F) / float(maker.height)};
            const Color color = maker.colorAt(point);
            pixels.insert(pixels.end(), {toByte(color.x), toByte(color.y), toByte(color.z), 255});
        }
    return {maker.width, maker.height, std::move(pixels)};
}

} // namespace

bool isTextureName(const std::string& name) { return find(name) != nullptr; }

float naturalTile(const std::string& name) {
    const Maker* maker = find(name);
    return maker ? maker->tile : 0;
}

double aspectOf(const Texture& texture) {
    if (const auto* image = std::get_if<platform::Image>(&texture))
        return image->isValid() ? double(image->pixelWidth()) / image->pixelHeight() : 1;
    const Maker* maker = find(std::get<std::string>(texture));
    return maker ? double(maker->width) / maker->height : 1;
}

platform::Image textureImage(const Texture& texture) {
    if (const auto* image = std::get_if<platform::Image>(&texture))
        return *image;
    const Maker* maker = find(std::get<std::string>(texture));
    return maker ? make(*maker) : platform::Image();
}

platform::Image halved(const platform::Image& image) {
    const int width = std::max(image.pixelWidth() / 2, 1), height = std::max(image.pixelHeight() / 2, 1);
    const auto pixels = image.pixels();
    const auto at = [&](int x, int y) {
        const int column = std::min(x, image.pixelWidth() - 1), row = std::min(y, image.pixelHeight() - 1);
        return &pixels[(std::size_t(row) * std::size_t(image.pixelWidth()) + std::size_t(column)) * 4];
    };
    std::vector<std::uint8_t> smaller;
    smaller.reserve(std::size_t(width) * std::size_t(height) * 4);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const std::array four{at(2 * x, 2 * y), at(2 * x + 1, 2 * y), at(2 * x, 2 * y + 1),
                                  at(2 * x + 1, 2 * y + 1)};
            for (int channel = 0; channel < 4; ++channel)
                smaller.push_back(std::uint8_t(
                    (four[0][channel] + four[1][channel] + four[2][channel] + four[3][channel] + 2) / 4));
        }
    return {width, height, std::move(smaller)};
}

} // namespace kestrin::session

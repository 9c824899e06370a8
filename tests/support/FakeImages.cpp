#include "support/FakeImages.h"

#include <sstream>
#include <string>

namespace kestrin::test {

platform::Image FakeImageCodec::decode(std::span<const std::uint8_t> bytes) const {
    std::istringstream in(std::string(bytes.begin(), bytes.end()));
    int width = 0, height = 0;
    if (!(in >> width >> height) || in.get() != ' ')
        return {};
    const auto rest = bytes.subspan(std::size_t(in.tellg()));
    return {width, height, {rest.begin(), rest.end()}};
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

platform::Image makeImage(int width, int height, std::uint8_t level) {
    return {width, height, std::vector<std::uint8_t>(std::size_t(width) * std::size_t(height) * 4, level)};
}

} // namespace kestrin::test

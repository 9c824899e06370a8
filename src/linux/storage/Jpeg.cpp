#include "linux/storage/Jpeg.h"

#include <turbojpeg.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <string_view>
#include <utility>

namespace kestrin::gtk {

namespace {

using Handle = std::unique_ptr<void, decltype(&tjDestroy)>;

bool hasExif(std::span<const std::uint8_t> bytes) {
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    return text.find("Exif") != text.npos;
}

/// The eighths that the decoder scales by: as many as give no more than `mostPixels`.
int eighthsFor(std::int64_t width, std::int64_t height, std::int64_t mostPixels) {
    int eighths = 8;
    while (eighths > 1 && ((width * eighths + 7) / 8) * ((height * eighths + 7) / 8) > mostPixels)
        --eighths;
    return eighths;
}

/// From [0, 1], whatever else is given, to the library's 1..100.
int percent(double quality) {
    const double bounded = quality > 0 ? (quality < 1 ? quality : 1) : 0;
    return std::max(1, int(std::lround(100 * bounded)));
}

} // namespace

std::optional<platform::Image> readJpeg(std::span<const std::uint8_t> bytes, std::int64_t mostPixels) {
    const Handle decoder(tjInitDecompress(), tjDestroy);
    int width = 0, height = 0, subsampling = 0, colours = 0;
    if (!decoder ||
        tjDecompressHeader3(decoder.get(), bytes.data(), bytes.size(), &width, &height, &subsampling,
                            &colours) != 0 ||
        hasExif(bytes))
        return std::nullopt;
    if (std::int64_t(width) * height > platform::ImageCodec::kMostPixels)
        return platform::Image();
    const tjscalingfactor scale{eighthsFor(width, height, mostPixels), 8};
    const int scaledWidth = TJSCALED(width, scale), scaledHeight = TJSCALED(height, scale);
    std::vector<std::uint8_t> pixels(std::size_t(scaledWidth) * std::size_t(scaledHeight) * 4);
    if (tjDecompress2(decoder.get(), bytes.data(), bytes.size(), pixels.data(), scaledWidth, 0, scaledHeight,
                      TJPF_RGBA, 0) != 0)
        return std::nullopt;
    return platform::Image(scaledWidth, scaledHeight, std::move(pixels),
                           platform::Size{double(width), double(height)});
}

std::vector<std::uint8_t> writeJpeg(const platform::Image& image, double quality) {
    const Handle compressor(tjInitCompress(), tjDestroy);
    unsigned char* bytes = nullptr;
    unsigned long size = 0;
    const int result = compressor && image.isValid()
                           ? tjCompress2(compressor.get(), image.pixels().data(), image.pixelWidth(), 0,
                                         image.pixelHeight(), TJPF_RGBX, &bytes, &size,
                                         quality < 1 ? TJSAMP_420 : TJSAMP_444, percent(quality), 0)
                           : -1;
    const std::unique_ptr<unsigned char, decltype(&tjFree)> owned(bytes, tjFree);
    if (result != 0)
        return {};
    return {bytes, bytes + size};
}

} // namespace kestrin::gtk

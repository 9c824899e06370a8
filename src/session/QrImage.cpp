#include "session/QrImage.h"

#include <ZXing/BitMatrix.h>
#include <ZXing/CharacterSet.h>
#include <ZXing/MultiFormatWriter.h>

#include <algorithm>
#include <exception>

namespace kestrin::session {

namespace {

constexpr int kModule = 8; // pixels, so that magnified edges stay sharp
constexpr int kQuietZone = 4;

ZXing::BitMatrix encode(const std::string& text) {
    ZXing::MultiFormatWriter writer(ZXing::BarcodeFormat::QRCode);
    writer.setMargin(kQuietZone);
    if (std::any_of(text.begin(), text.end(), [](char c) { return (c & 0x80) != 0; }))
        writer.setEncoding(ZXing::CharacterSet::UTF8);
    return writer.encode(text, 0, 0);
}

platform::Image draw(const ZXing::BitMatrix& code) {
    const int width = code.width() * kModule, height = code.height() * kModule;
    std::vector<std::uint8_t> pixels;
    pixels.reserve(std::size_t(width) * std::size_t(height) * 4);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const std::uint8_t shade = code.get(x / kModule, y / kModule) ? 0 : 255;
            pixels.insert(pixels.end(), {shade, shade, shade, 255});
        }
    return {width, height, std::move(pixels)};
}

} // namespace

platform::Image makeQrImage(const std::string& text) {
    try {
        return draw(encode(text));
    } catch (const std::exception&) {
        return {};
    }
}

} // namespace kestrin::session

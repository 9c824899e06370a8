#define ZX_USE_UTF8
#include "linux/vision/ZxingVision.h"

#include <ZXing/ReadBarcode.h>

#include <exception>

namespace kestrin::gtk {

using namespace platform;

namespace {

ZXing::DecodeHints hintsFor(const BarcodeRequest& request) {
    ZXing::BarcodeFormats formats;
    for (const BarcodeSymbology symbology : request.symbologies)
        switch (symbology) {
        case BarcodeSymbology::qr:
            formats |= ZXing::BarcodeFormat::QRCode;
        }
    // Turned codes need no further look: their corners tell how they lie.
    return ZXing::DecodeHints().setFormats(formats).setTryRotate(false);
}

BarcodeObservation observation(const ZXing::Result& code) {
    if (code.contentType() == ZXing::ContentType::Binary)
        return {};
    return {code.text()};
}

} // namespace

std::vector<BarcodeObservation> ZxingVision::perform(const BarcodeRequest& request,
                                                     const PixelBuffer& picture, PictureOrientation) {
    const PixelPlane luma = picture.plane(0);
    // No formats would mean all of them.
    if (request.symbologies.empty() || !luma.data || luma.width <= 0 || luma.height <= 0)
        return {};
    std::vector<BarcodeObservation> found;
    try {
        const ZXing::ImageView view(luma.data, luma.width, luma.height, ZXing::ImageFormat::Lum, luma.stride);
        for (const ZXing::Result& code : ZXing::ReadBarcodes(view, hintsFor(request)))
            found.push_back(observation(code));
    } catch (const std::exception&) {
        // A picture in which the decoder fails has no codes.
    }
    return found;
}

} // namespace kestrin::gtk

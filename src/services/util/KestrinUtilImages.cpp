#include "services/util/Base64.h"
#include "services/util/BundledImages.h"
#include "services/util/DecodeImage.h"
#include "services/util/Format.h"
#include "services/util/KestrinUtil.h"

#include <boost/json/value.hpp>

namespace kestrin {

namespace {

std::string jpgName(const std::string& fileName) { return format("%@.%@", fileName, "jpg"); }

} // namespace

void KestrinUtil::saveJPGImage(const platform::Image& image, const std::string& fileName) {
    const auto bytes = platform::platform().images().encodeJpeg(image, 1.0);
    if (!bytes.empty())
        platform::platform().storage().writeDocument(jpgName(fileName), bytes);
}

platform::Image KestrinUtil::loadJPGImage(const std::string& fileName, std::int64_t mostPixels) {
    const auto bytes = platform::platform().storage().readDocument(jpgName(fileName));
    return bytes ? decodeImage(*bytes, mostPixels) : platform::Image();
}

platform::Image KestrinUtil::loadJPGImageBundled(const std::string& name) {
    return BundledImages::getInstance()->find(name);
}

platform::Image KestrinUtil::loadImageBundled(const std::string& name) { return loadJPGImageBundled(name); }

std::string KestrinUtil::convertImageToBase64JPEG(const platform::Image& image) {
    return base64EncodeInLines(platform::platform().images().encodeJpeg(image, 100));
}

platform::Image KestrinUtil::cropImage(const platform::Image& image, std::int32_t startX, std::int32_t startY,
                                       std::int32_t width, std::int32_t height) {
    return image.cropped(startX, startY, width, height);
}

} // namespace kestrin

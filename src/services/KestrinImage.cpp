#include "services/KestrinImage.h"

#include "platform/Platform.h"
#include "services/ImagePreviewController.h"
#include "services/KestrinPermission.h"
#include "services/util/Format.h"
#include "services/util/Json.h"
#include "services/util/KestrinUtil.h"

#include <boost/json.hpp>

#include <array>
#include <chrono>
#include <cmath>
#include <utility>

namespace kestrin {

using namespace platform;

namespace json = boost::json;

namespace {

constexpr Size kBlank{36, 36};
constexpr double kBestQuality = 1.0;

/// Thread: worker.
void addToPhotoLibrary(const Image& image, std::chrono::system_clock::time_point created) {
    const auto jpeg = platform::platform().images().encodeJpeg(image, kBestQuality);
    const auto failure = jpeg.empty() ? std::optional<std::string>("The picture cannot be written as JPEG.")
                                      : platform::platform().storage().addPhoto(jpeg, created);
    if (failure)
        log("KestrinImage::saveIntoCameraRollAfterPermission::Image Saving Failed::reason= %@", failure);
    else
        log("KestrinImage::saveIntoCameraRollAfterPermission::Image Saved Successfully.");
}

/// Adds the texts of a map that may be missing, in the order asked for.
void addTexts(std::vector<ShareItem>& items, const json::value* map,
              std::initializer_list<std::string_view> names) {
    for (const auto name : names)
        if (auto text = textOf(findMember(map, {name})))
            items.emplace_back(std::move(*text));
}

} // namespace

KestrinImage::KestrinImage(const Image& image, std::optional<std::vector<std::uint8_t>> buffer)
    : _img(image), _buffer(std::move(buffer)) {}

std::shared_ptr<KestrinImage> KestrinImage::initBlank() {
    return initWithImage(platform::platform().images().compose(kBlank, false, 1, {}));
}

std::shared_ptr<KestrinImage> KestrinImage::initWithImage(const Image& image) {
    return std::shared_ptr<KestrinImage>(new KestrinImage(image, std::nullopt));
}

std::shared_ptr<KestrinImage> KestrinImage::initWithImageData(const Image& image,
                                                              std::vector<std::uint8_t> data) {
    return std::shared_ptr<KestrinImage>(new KestrinImage(image, std::move(data)));
}

std::shared_ptr<KestrinImage> KestrinImage::initWithBase64String(const std::optional<std::string>& url) {
    return initWithImage(url ? KestrinUtil::getImageFromURL(*url) : Image());
}

std::shared_ptr<KestrinImage> KestrinImage::combineWithImage(const std::shared_ptr<KestrinImage>& first,
                                                             const std::shared_ptr<KestrinImage>& second) {
    if (!first || !second) {
        log("KestrinImage::combineWithImage::One of the Parameters was NULL. Unable to Proceed. Returning "
            "nil.");
        return nullptr;
    }
    if (!first->isValid() || !second->isValid()) {
        log("KestrinImage::combineWithImage::One of the Images was Invalid. Unable to Proceed. Returning "
            "nil. first=%d second=%d",
            int(first->isValid()), int(second->isValid()));
        return nullptr;
    }
    log("KestrinImage::combineWithImage::First Image Width(%f) Height(%f)", first->getWidth(),
        first->getHeight());
    log("KestrinImage::combineWithImage::Second Image Width(%f) Height(%f)", second->getWidth(),
        second->getHeight());
    const Size size{std::fmax(first->getWidth(), second->getWidth()),
                    std::fmax(first->getHeight(), second->getHeight())};
    const std::array<ImageLayer, 2> layers{ImageLayer{first->_img, {{}, size}},
                                           ImageLayer{second->_img, {{}, size}}};
    const double scale = platform::platform().application().mainScreen().nativeScale;
    return initWithImage(platform::platform().images().compose(size, true, scale, layers));
}

void KestrinImage::saveIntoCameraRoll() const {
    if (!isValid()) {
        log("KestrinImage::saveIntoCameraRoll::Unable to save NULL Image. Nothing Saved. Returning.");
        return;
    }
    log("KestrinImage -> Performing Save Functionality");
    KestrinPermission::askPhotoAccess([self = *this] { self.saveIntoCameraRollAfterPermission(); },
                                      KestrinPermission::denyPhotoMessage);
}

void KestrinImage::saveIntoCameraRollAfterPermission() const {
    if (!isValid()) {
        log("KestrinImage::saveIntoCameraRollAfterPermission::Unable to save NULL Image. Nothing Saved. "
            "Returning.");
        return;
    }
    log("KestrinImage::saveIntoCameraRollAfterPermission::Saving Image width=%f height=%f", getWidth(),
        getHeight());
    platform::platform().dispatch().globalAsync(
        [image = _img, now = std::chrono::system_clock::now()] { addToPhotoLibrary(image, now); });
}

void KestrinImage::share(const json::object& event) const {
    log("KestrinImage -> Performing Share Functionality");
    std::vector<ShareItem> items{_img};
    addTexts(items, findMember(event, {"data", "share"}), {"title", "subject", "text"});
    const auto preview = ImagePreviewController::init();
    preview->setup(items);
    preview->setPreviewImage(_img);
    platform::platform().application().present(preview);
}

void KestrinImage::shareDirect(const json::object& event) const {
    log("KestrinImage -> Performing Share Functionality");
    std::vector<ShareItem> items;
    addTexts(items, findMember(event, {"data"}), {"text"});
    items.emplace_back(_img);
    platform::platform().application().presentShareSheet(items);
}

} // namespace kestrin

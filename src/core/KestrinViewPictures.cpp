#include "core/KestrinView.h"
#include "core/config/KestrinFeatureFlags.h"
#include "services/FetchImage.h"
#include "services/KestrinImage.h"
#include "services/KestrinPermission.h"
#include "services/util/Json.h"
#include "tracking/CVManager.h"

#include <boost/json.hpp>

namespace kestrin {

namespace json = boost::json;

namespace {

bool wantsToShare(const json::object& event) {
    return KestrinFeatureFlags::getInstance()->containsFlag("photoshare") ||
           isPresent(findMember(event, {"data", "share"}));
}

/// `picture` is null when there was nothing to combine.
void savePicture(const std::shared_ptr<KestrinImage>& picture, const json::object& event) {
    if (!picture)
        return;
    picture->saveIntoCameraRoll();
    if (wantsToShare(event))
        picture->share(event);
}

void combineAndSave(const std::shared_ptr<KestrinImage>& camera, const std::shared_ptr<KestrinImage>& page,
                    const json::object& event) {
    const auto picture = KestrinImage::combineWithImage(camera, page);
    KestrinView::isPhotoAccessMinimize = true;
    KestrinPermission::askPhotoAccess(
        [picture, event] {
            KestrinView::isPhotoAccessMinimize = false;
            savePicture(picture, event);
        },
        [] {
            KestrinView::isPhotoAccessMinimize = false;
            KestrinPermission::denyPhotoMessage();
        });
}

} // namespace

void KestrinView::onCaptureScreenshot(const json::object& event) { onCaptureScreenshotPermissionless(event); }

void KestrinView::onCaptureScreenshotPermissionless(const json::object& event) {
    const auto camera = KestrinImage::initWithImage(m_CV ? m_CV->getScreenshot() : platform::Image());
    fetchImage(textOf(findMember(event, {"data", "image"})),
               [camera, event](const auto& page) { combineAndSave(camera, page, event); });
}

void KestrinView::onShare(const json::object& event) {
    fetchImage(textOf(findMember(event, {"data", "imageUrl"})),
               [event](const auto& picture) { picture->shareDirect(event); });
}

} // namespace kestrin

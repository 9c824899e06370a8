#include "services/ImagePreviewController.h"

#include "platform/Platform.h"
#include "services/util/Format.h"

namespace kestrin {

using namespace platform;

namespace {

constexpr double kButtonCorner = 6.0, kPanelCorner = 10.0; // points

void roundCorners(const std::shared_ptr<View>& view, double radius) {
    if (view)
        view->setBorder({radius, 0, kClear});
}

} // namespace

std::shared_ptr<ImagePreviewController> ImagePreviewController::init() {
    return std::shared_ptr<ImagePreviewController>(new ImagePreviewController);
}

std::shared_ptr<View> ImagePreviewController::view() {
    if (!m_view)
        loadView();
    return m_view;
}

void ImagePreviewController::loadView() {
    const auto content = platform::platform().views().loadInterface("ImagePreview");
    m_view = content.root;
    if (!m_view)
        return;
    _imageHolder = content.part<View>("imageHolder");
    _cancelButton = content.part<Button>("cancelButton");
    _shareButton = content.part<Button>("shareButton");
    _imageView = content.part<ImageView>("imageView");
    _safeView = content.part<View>("safeView");
    const auto connect = [this](const std::weak_ptr<Button>& button,
                                void (ImagePreviewController::*click)()) {
        if (const auto present = button.lock())
            present->onClick([weak = weak_from_this(), click] {
                if (const auto self = weak.lock())
                    (self.get()->*click)();
            });
    };
    connect(_cancelButton, &ImagePreviewController::cancelButtonClick);
    connect(_shareButton, &ImagePreviewController::shareButtonClick);
    viewDidLoad();
}

void ImagePreviewController::viewDidLoad() {
    log("ImagePreviewController - Loaded");
    roundCorners(_shareButton.lock(), kButtonCorner);
    roundCorners(_cancelButton.lock(), kButtonCorner);
    roundCorners(_imageHolder.lock(), kPanelCorner);
    roundCorners(_safeView.lock(), kPanelCorner);
}

void ImagePreviewController::viewDidAppear() {
    log("ImagePreviewController - Appear");
    if (const auto picture = _imageView.lock())
        picture->setImage(_previewImage);
}

void ImagePreviewController::cancelButtonClick() { platform::platform().application().dismiss(*this); }

void ImagePreviewController::shareButtonClick() {
    Application& application = platform::platform().application();
    log("Kestrin - Dismiss Root Share Controller");
    application.dismiss(*this);
    log("Kestrin - Presenting Share Controller");
    application.presentShareSheet({_previewImage});
}

} // namespace kestrin

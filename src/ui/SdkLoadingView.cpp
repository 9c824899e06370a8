#include "ui/SdkLoadingView.h"

#include "services/util/MainThread.h"

namespace kestrin {

std::shared_ptr<SdkLoadingView> SdkLoadingView::initWithFrame(const platform::Rect& frame) {
    const auto view = platform::makeView<SdkLoadingView>();
    view->setFrame(frame);
    view->customInit();
    return view;
}

void SdkLoadingView::customInit() {
    const auto content = loadContent("SdkLoading");
    _mainView = content.root;
    _loadingSpinner = content.part<platform::Spinner>("loadingSpinner");
    const auto message = content.part<platform::Label>("message");
    _message = message;
    if (message)
        message->setHidden(true);
    const auto background = content.part<platform::ImageView>("backgroundImage");
    _backgroundImage = background;
    if (background)
        background->setHidden(true);
}

void SdkLoadingView::setBGImage(const platform::Image& image) {
    if (!image.isValid() || divertToMain([self = shared(*this), image] { self->setBGImage(image); }))
        return;
    if (const auto background = _backgroundImage.lock()) {
        background->setHidden(false);
        background->setImage(image);
    }
    if (const auto spinner = _loadingSpinner.lock())
        spinner->setColor(platform::kWhite);
}

void SdkLoadingView::setMessage(const std::string& message) {
    if (divertToMain([self = shared(*this), message] { self->setMessage(message); }))
        return;
    if (const auto label = _message.lock()) {
        label->setText(message);
        label->setHidden(message.empty());
    }
}

} // namespace kestrin

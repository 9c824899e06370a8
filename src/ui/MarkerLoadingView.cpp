#include "ui/MarkerLoadingView.h"

#include "services/util/MainThread.h"

namespace kestrin {

std::shared_ptr<MarkerLoadingView> MarkerLoadingView::initWithFrame(const platform::Rect& frame) {
    const auto view = platform::makeView<MarkerLoadingView>();
    view->setFrame(frame);
    view->customInit();
    return view;
}

void MarkerLoadingView::customInit() {
    const auto content = loadContent("MarkerLoading");
    _mainView = content.root;
    const auto background = content.part<platform::ImageView>("backgroundImage");
    _backgroundImage = background;
    if (background)
        background->setHidden(true);
}

void MarkerLoadingView::setBGImage(const platform::Image& image) {
    if (!image.isValid() || divertToMain([self = shared(*this), image] { self->setBGImage(image); }))
        return;
    if (const auto background = _backgroundImage.lock()) {
        background->setHidden(false);
        background->setImage(image);
    }
}

} // namespace kestrin

#include "ui/ErrorPreviewView.h"

#include "services/util/MainThread.h"

namespace kestrin {

std::shared_ptr<ErrorPreviewView> ErrorPreviewView::initWithFrame(const platform::Rect& frame) {
    const auto view = platform::makeView<ErrorPreviewView>();
    view->setFrame(frame);
    view->customInit();
    return view;
}

void ErrorPreviewView::customInit() {
    const auto content = loadContent("ErrorPreview");
    _mainView = content.root;
    _title = content.part<platform::Label>("title");
    _body = content.part<platform::Label>("body");
    const auto panel = content.part<platform::View>("backgroundView");
    _backgroundView = panel;
    if (panel)
        panel->setBorder({8.0, 0.3, platform::kDarkGray});
}

void ErrorPreviewView::setTitle(const std::string& title, const std::string& body) {
    if (divertToMain([self = shared(*this), title, body] { self->setTitle(title, body); }))
        return;
    if (const auto label = _title.lock())
        label->setText(title);
    if (const auto label = _body.lock())
        label->setText(body);
}

} // namespace kestrin

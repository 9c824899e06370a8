#include "ui/KestrinCustomView.h"

#include "services/util/Format.h"
#include "services/util/MainThread.h"

namespace kestrin {

using platform::View;

namespace {

constexpr double kHideDelay = 0.5; // seconds, as the next
constexpr double kFade = 0.3;
constexpr unsigned kFlexibleSize = View::kFlexibleWidth | View::kFlexibleHeight;

} // namespace

void KestrinCustomView::show() {
    if (divertToMain([self = shared(*this)] { self->show(); }))
        return;
    setHidden(false);
    setOpacity(1);
}

void KestrinCustomView::hide() {
    platform::platform().dispatch().mainAfter(kHideDelay, [self = shared(*this)] {
        self->animateOpacity(0, kFade, [weak = self->weak_from_this()](bool finished) {
            if (const auto faded = weak.lock())
                faded->setHidden(finished);
        });
    });
}

void KestrinCustomView::hideInstant() {
    if (divertToMain([self = shared(*this)] { self->hideInstant(); }))
        return;
    setOpacity(0);
    setHidden(true);
}

void KestrinCustomView::addToParentView(const std::shared_ptr<View>& parent) {
    if (!parent) {
        log("Kestrin - KestrinCustomView - addToSubview - Cannot add since view argument is NULL.");
        return;
    }
    if (!divertToMain([self = shared(*this), parent] { self->addToParentView(parent); }))
        addClipConstraints(shared_from_this(), parent);
}

void KestrinCustomView::removeFromParentView() {
    if (!divertToMain([self = shared(*this)] { self->removeFromParentView(); }))
        removeFromParent(shared_from_this());
}

void KestrinCustomView::clipToParent() {
    if (!divertToMain([self = shared(*this)] { self->clipToParent(); }))
        clipToParent(shared_from_this());
}

void KestrinCustomView::addClipConstraints(const std::shared_ptr<View>& view,
                                           const std::shared_ptr<View>& parent) {
    view->setResizing(kFlexibleSize);
    view->setFrame(parent->bounds());
    parent->addSubview(view);
}

void KestrinCustomView::removeFromParent(const std::shared_ptr<View>& view) { view->removeFromSuperview(); }

void KestrinCustomView::clipToParent(const std::shared_ptr<View>& view) {
    if (const auto parent = view->superview())
        view->setFrame(parent->bounds());
}

platform::Interface KestrinCustomView::loadContent(const std::string& name) {
    auto content = platform::platform().views().loadInterface(name);
    setBackground(platform::kClear);
    if (content.root) {
        addSubview(content.root);
        // The roots of the resources fill their view, whose own frame comes later.
        content.root->setResizing(kFlexibleSize);
        content.root->setFrame(bounds());
    }
    return content;
}

} // namespace kestrin

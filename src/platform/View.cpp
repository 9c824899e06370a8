#include "platform/View.h"

#include "platform/Platform.h"

#include <algorithm>
#include <utility>

namespace kestrin::platform {

namespace {
constexpr double kFadeStep = 1.0 / 60; // seconds
}

struct View::Fade {
    double from, target, began, seconds;
    std::function<void(bool)> done;
    std::unique_ptr<RepeatingTimer> timer;
};

View::View() : View(platform().views().makePeer(*this)) {}

View::View(std::unique_ptr<ViewPeer> peer) : m_peer(std::move(peer)) {}

View::~View() = default;

void View::setFrame(const Rect& frame) {
    const double wider = frame.size.width - m_frame.size.width;
    const double higher = frame.size.height - m_frame.size.height;
    m_frame = frame;
    m_peer->setFrame(frame);
    if (wider == 0 && higher == 0)
        return;
    for (const auto& child : m_subviews) {
        Rect follows = child->m_frame;
        if (child->m_resizing & kFlexibleWidth)
            follows.size.width += wider;
        if (child->m_resizing & kFlexibleHeight)
            follows.size.height += higher;
        if (follows != child->m_frame)
            child->setFrame(follows);
    }
}

void View::setHidden(bool hidden) {
    m_hidden = hidden;
    m_peer->setHidden(hidden);
}

void View::setOpacity(double opacity) {
    m_opacity = opacity > 0 ? (opacity < 1 ? opacity : 1) : 0;
    m_peer->setOpacity(m_opacity);
}

void View::setBackground(const Color& color) {
    m_background = color;
    m_peer->setBackground(color);
}

void View::setBorder(const Border& border) {
    m_border = border;
    m_peer->setBorder(border);
}

void View::animateOpacity(double target, double seconds, std::function<void(bool)> done) {
    const auto interrupted =
        std::exchange(m_fade, std::make_unique<Fade>(m_opacity, target, platform().dispatch().now(), seconds,
                                                     std::move(done), nullptr));
    m_fade->timer = platform().dispatch().every(kFadeStep, [weak = weak_from_this()] {
        if (const auto self = weak.lock())
            self->stepFade();
    });
    if (interrupted && interrupted->done)
        interrupted->done(false);
}

void View::stepFade() {
    if (!m_fade)
        return;
    const double elapsed = platform().dispatch().now() - m_fade->began;
    if (elapsed < m_fade->seconds) {
        setOpacity(m_fade->from + (m_fade->target - m_fade->from) * elapsed / m_fade->seconds);
        return;
    }
    const auto ended = std::move(m_fade);
    setOpacity(ended->target);
    if (ended->done)
        ended->done(true);
}

void View::addSubview(std::shared_ptr<View> child) {
    if (!child || child.get() == this)
        return;
    child->removeFromSuperview();
    child->m_superview = weak_from_this();
    m_subviews.push_back(std::move(child));
    subviewsChanged();
}

void View::removeFromSuperview() {
    const auto parent = m_superview.lock();
    m_superview.reset();
    if (parent)
        parent->removeSubview(*this);
}

void View::removeSubview(const View& child) {
    std::erase_if(m_subviews, [&](const auto& present) { return present.get() == &child; });
    subviewsChanged();
}

void View::subviewsChanged() {
    std::vector<ViewPeer*> peers;
    for (const auto& child : m_subviews)
        peers.push_back(child->m_peer.get());
    m_peer->setSubviews(peers);
}

void View::toolkitResized(const Size& size) { setFrame({m_frame.origin, size}); }

void releaseOnMain(Task destroy) {
    Dispatch& dispatch = platform().dispatch();
    if (dispatch.isMain())
        destroy();
    else
        dispatch.mainAsync(std::move(destroy));
}

} // namespace kestrin::platform

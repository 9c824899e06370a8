#include "tracking/KestrinTriggerList.h"

#include "core/config/KestrinFeatureFlags.h"
#include "platform/Platform.h"
#include "services/util/Format.h"
#include "services/util/KestrinUtil.h"
#include "services/util/MainThread.h"
#include "services/util/Singleton.h"
#include "services/util/SystemLevel.h"
#include "ui/MarkerLoadingView.h"

#include <boost/json.hpp>

#include <cmath>
#include <numbers>
#include <utility>

namespace kestrin {

namespace json = boost::json;

using platform::View;

namespace {

std::shared_ptr<MarkerLoadingView> makeOverlay() {
    const auto overlay = MarkerLoadingView::initWithFrame({});
    overlay->setResizing(View::kFlexibleWidth | View::kFlexibleHeight);
    overlay->setHidden(true);
    return overlay;
}

bool canSupport() { return systemIsAtLeast(11.3) && KestrinTriggerList::wantsToSupport(); }

} // namespace

std::shared_ptr<KestrinTriggerList> KestrinTriggerList::getInstance() {
    return singleton<KestrinTriggerList>();
}

KestrinTriggerList::KestrinTriggerList() : _mainLoadingView(makeOverlay()), _canSupport(canSupport()) {}

KestrinTriggerList::~KestrinTriggerList() = default;

bool KestrinTriggerList::wantsToSupport() {
    const auto flags = KestrinFeatureFlags::getInstance();
    return flags->containsFlag("nativetriggers") &&
           (flags->containsFlag("snap") || flags->containsFlag("triggerimage"));
}

bool KestrinTriggerList::isSupported() { return getInstance()->supported(); }

void KestrinTriggerList::resync() { _canSupport = canSupport(); }

void KestrinTriggerList::loadFromAPIForARKit(const std::string& serverOrigin,
                                             const std::optional<std::string>& applicationID) {
    if (!isReady())
        return;
    if (!isSupported()) {
        log("KestrinTriggerList - Skipping Marker Loading since nativetriggers Feature Flag is not set.");
        return;
    }
    if (!systemIsAtLeast(11.3))
        return;
    {
        const std::lock_guard lock(m_mutex);
        if (!std::exchange(_mIsReady, false))
            return; // another thread was quicker
    }
    const std::string url =
        format("%@/api/v2/application/%@/triggerbundleios?include=file&fields[file]=effective_uri",
               serverOrigin, applicationID);
    log("KestrinTriggerList - Getting Marker List from %@", url);
    KestrinUtil::sendAsyncRequest(
        url, [self = shared_from_this()](auto answer) { self->onAnswer(std::move(answer)); });
}

void KestrinTriggerList::onAnswer(std::optional<json::value> answer) {
    if (!answer) {
        log("KestrinTriggerList - Unable to download.");
        completeARKitFromMainThread();
        return;
    }
    platform::platform().dispatch().globalAsync(
        [self = shared_from_this(), held = std::make_shared<const json::value>(std::move(*answer))] {
            self->buildSet(*held);
        });
}

void KestrinTriggerList::buildSet(const json::value& answer) {
    TriggerSetBuild::start(
        TriggerBundle::read(answer),
        [self = shared_from_this()](float progress) { self->_mainLoadingView->setProgress(progress); },
        [self = shared_from_this()](TriggerSet built) {
            {
                const std::lock_guard lock(self->m_mutex);
                self->_mARKitSet.swap(built);
            }
            self->completeARKitFromMainThread();
        });
}

void KestrinTriggerList::completeARKitFromMainThread() {
    if (divertToMain([self = shared_from_this()] { self->completeARKitFromMainThread(); }))
        return;
    SetCallback waiter;
    {
        const std::lock_guard lock(m_mutex);
        _mIsReady = true;
        waiter = _callback;
    }
    _mainLoadingView->hide();
    if (systemIsAtLeast(11.3))
        loadForARKit(std::move(waiter));
}

bool KestrinTriggerList::isReady() const {
    const std::lock_guard lock(m_mutex);
    return _mIsReady || !systemIsAtLeast(11.3);
}

void KestrinTriggerList::loadForARKit(SetCallback callback) {
    if (!callback)
        return;
    TriggerSet triggers;
    bool parked = false;
    {
        const std::lock_guard lock(m_mutex);
        parked = !_mIsReady && systemIsAtLeast(11.3);
        if (parked)
            _callback.swap(callback);
        else
            triggers = _mARKitSet;
    }
    if (parked) {
        _mainLoadingView->reset();
        _mainLoadingView->show();
        return;
    }
    log("KestrinTriggerList - Ready And Complete!");
    callback(triggers);
}

TriggerSet KestrinTriggerList::getARKitTriggerSet() const {
    const std::lock_guard lock(m_mutex);
    return _mARKitSet;
}

platform::Image KestrinTriggerList::imageRotatedByDegrees(const platform::Image& image, double degrees) {
    const double angle = degrees * std::numbers::pi / 180;
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    const auto [w, h] = image.size();
    const platform::Size canvas{std::abs(w * c) + std::abs(h * s), std::abs(w * s) + std::abs(h * c)};
    const platform::ImageLayer layer{
        image, {{-w / 2, -h / 2}, {w, h}}, {c, s, -s, c, canvas.width / 2, canvas.height / 2}};
    return platform::platform().images().compose(canvas, false, 1, {&layer, 1});
}

void KestrinTriggerList::addToParentView(const std::shared_ptr<View>& parent) {
    _mainLoadingView->addToParentView(parent);
}

void KestrinTriggerList::removeFromParentView() { _mainLoadingView->removeFromParentView(); }

void KestrinTriggerList::clipToParent() { _mainLoadingView->clipToParent(); }

} // namespace kestrin

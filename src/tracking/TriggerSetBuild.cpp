#include "tracking/TriggerSetBuild.h"

#include "core/config/KestrinFeatureFlags.h"
#include "platform/Platform.h"
#include "services/util/Format.h"
#include "services/util/KestrinUtil.h"
#include "services/util/SystemLevel.h"

#include <algorithm>
#include <utility>

namespace kestrin {

namespace {

/// Pictures read and not yet taken, or being read. Each can be large.
constexpr std::size_t kMostAhead = 3;

/// Of a reference image: what is printed fills less of a camera picture.
constexpr std::int64_t kMostPixels = 512 * 512;

/// Of all of them together, four bytes each, however many triggers there are.
constexpr std::int64_t kMostPixelsTogether = 24'000'000;

constexpr double kLeastSide = 100;     // points
constexpr float kUnscaledWidth = 0.2F; // metres, as the next
constexpr float kLeastScaledWidth = 0.05F;
constexpr float kMetresPerMillimetre = 0.001F;

std::int64_t pixelsOfEach(std::size_t triggers) {
    const auto share = kMostPixelsTogether / std::max<std::int64_t>(std::int64_t(triggers), 1);
    return std::clamp<std::int64_t>(share, 1, kMostPixels);
}

float physicalWidth(const TriggerBundle::Trigger& trigger) {
    const auto flags = KestrinFeatureFlags::getInstance();
    if (!flags->containsFlag("triggerlock") && !flags->containsFlag("triggerworldscale"))
        return kUnscaledWidth;
    return std::max(std::max(trigger.width, trigger.height) * kMetresPerMillimetre, kLeastScaledWidth);
}

} // namespace

void TriggerSetBuild::start(TriggerBundle bundle, Progress progress, Done done) {
    const std::shared_ptr<TriggerSetBuild> build(
        new TriggerSetBuild(std::move(bundle), std::move(progress), std::move(done)));
    if (build->m_bundle.triggers.empty()) {
        build->m_done({});
        return;
    }
    const std::lock_guard lock(build->m_mutex);
    build->readAhead();
}

TriggerSetBuild::TriggerSetBuild(TriggerBundle bundle, Progress progress, Done done)
    : m_bundle(std::move(bundle)), m_mostPixels(pixelsOfEach(m_bundle.triggers.size())),
      m_progress(std::move(progress)), m_done(std::move(done)) {}

void TriggerSetBuild::readAhead() {
    const std::size_t end = std::min(m_nextToTake + kMostAhead, m_bundle.triggers.size());
    for (; m_nextToRead < end; ++m_nextToRead)
        platform::platform().dispatch().globalAsync([self = shared_from_this(), place = m_nextToRead] {
            self->take(place,
                       KestrinUtil::loadJPGImage(self->m_bundle.triggers[place].id, self->m_mostPixels));
        });
}

void TriggerSetBuild::take(std::size_t place, platform::Image cached) {
    std::unique_lock lock(m_mutex);
    m_read.emplace(place, std::move(cached));
    if (m_isTaking)
        return; // whoever is taking takes this one in its turn
    m_isTaking = true;
    while (auto next = m_read.extract(m_nextToTake)) {
        lock.unlock();
        add(m_bundle.triggers[next.key()], std::move(next.mapped()));
        lock.lock();
        ++m_nextToTake;
        readAhead();
    }
    m_isTaking = false;
    const bool isDone = m_nextToTake == m_bundle.triggers.size();
    lock.unlock();
    if (isDone)
        m_done(std::move(m_set));
}

platform::Image TriggerSetBuild::download(const Trigger& trigger) const {
    log("KestrinTriggerList - Caching Trigger %@ from %@", trigger.id, trigger.address);
    const auto image = KestrinUtil::getImageFromURL(trigger.address);
    KestrinUtil::saveJPGImage(image, trigger.id);
    if (!image.isValid())
        log("KestrinTriggerList - Failed Loading Trigger %@ from %@", trigger.id, trigger.address);
    return image.shrunk(m_mostPixels);
}

void TriggerSetBuild::add(const Trigger& trigger, platform::Image image) {
    if (!image.isValid())
        image = download(trigger);
    if (!image.isValid())
        return;
    if (image.size().width < kLeastSide || image.size().height < kLeastSide) {
        log("KestrinTriggerList - Failed Loading Trigger, size too small %@ from %@", trigger.id,
            trigger.address);
        return;
    }
    if (!systemIsAtLeast(11.3)) {
        log("KestrinTriggerList - Unable to load Trigger %@ - Operation requires IOS 11.3", trigger.id);
        return;
    }
    const float width = physicalWidth(trigger);
    log("KestrinTriggerList - Add Trigger %@ from %@ - size %f", trigger.id, trigger.address, width);
    m_set.push_back(std::make_shared<platform::ArReferenceImage>(
        platform::ArReferenceImage{trigger.id, std::move(image), width}));
    m_progress(float(m_set.size()) * (1 / float(m_bundle.records)));
}

} // namespace kestrin

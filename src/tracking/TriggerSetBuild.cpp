#include "tracking/TriggerSetBuild.h"

#include "core/config/KestrinFeatureFlags.h"
#include "platform/Platform.h"
#include "services/util/Format.h"
#include "services/util/KestrinUtil.h"
#include "tracking/ShrinkImage.h"
#include "tracking/SystemLevel.h"

#include <algorithm>
#include <utility>

namespace kestrin {

namespace {

/// Pictures read and not yet taken, or being read. Each can be large.
constexpr std::size_t kMostAhead = 3;

/// Of a reference image. What is printed fills less of a camera picture; more would only take memory, of
/// which an application with hundreds of triggers needs enough.
constexpr std::int64_t kMostPixels = 512 * 512;

constexpr double kLeastSide = 100;     // points
constexpr float kUnscaledWidth = 0.2F; // metres, as the next
constexpr float kLeastScaledWidth = 0.05F;
constexpr float kMetresPerMillimetre = 0.001F;

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
    : m_bundle(std::move(bundle)), m_progress(std::move(progress)), m_done(std::move(done)) {}

void TriggerSetBuild::readAhead() {
    const std::size_t end = std::min(m_nextToTake + kMostAhead, m_bundle.triggers.size());
    for (; m_nextToRead < end; ++m_nextToRead)
        platform::platform().dispatch().globalAsync([self = shared_from_this(), place = m_nextToRead] {
            self->take(place, shrink(KestrinUtil::loadJPGImage(self->m_bundle.triggers[place].id)));
        });
}

void TriggerSetBuild::take(std::size_t place, Picture cached) {
    std::unique_lock lock(m_mutex);
    m_read.emplace(place, std::move(cached));
    if (m_isTaking)
        return; // whoever is taking takes this one in its turn
    m_isTaking = true;
    while (const auto next = m_read.extract(m_nextToTake)) {
        lock.unlock();
        add(m_bundle.triggers[next.key()], next.mapped());
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

TriggerSetBuild::Picture TriggerSetBuild::shrink(const platform::Image& original) {
    return {shrinkImage(original, kMostPixels), original.size()};
}

TriggerSetBuild::Picture TriggerSetBuild::download(const Trigger& trigger) {
    log("KestrinTriggerList - Caching Trigger %@ from %@", trigger.id, trigger.address);
    const auto image = KestrinUtil::getImageFromURL(trigger.address);
    KestrinUtil::saveJPGImage(image, trigger.id);
    if (!image.isValid())
        log("KestrinTriggerList - Failed Loading Trigger %@ from %@", trigger.id, trigger.address);
    return shrink(image);
}

void TriggerSetBuild::add(const Trigger& trigger, const Picture& cached) {
    const auto [image, size] = cached.image.isValid() ? cached : download(trigger);
    if (!image.isValid())
        return;
    if (size.width < kLeastSide || size.height < kLeastSide) {
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
    m_set.push_back(
        std::make_shared<platform::ArReferenceImage>(platform::ArReferenceImage{trigger.id, image, width}));
    m_progress(float(m_set.size()) * (1 / float(m_bundle.records)));
}

} // namespace kestrin

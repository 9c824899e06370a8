#include "session/recording/RecordedAnchors.h"

#include "session/Uuid.h"

#include <algorithm>
#include <utility>

namespace kestrin::session {

using platform::ArAnchor;
using platform::ArConfiguration;
using platform::ArImageAnchor;
using platform::ArPlaneAnchor;
using ReferenceRef = std::shared_ptr<const platform::ArReferenceImage>;

namespace {

bool asksFor(const ArConfiguration& configuration, const ArPlaneAnchor& plane) {
    const unsigned kind = plane.isVertical ? ArConfiguration::kVertical : ArConfiguration::kHorizontal;
    return configuration.kind == ArConfiguration::Kind::world && (configuration.planeDetection & kind) != 0;
}

ReferenceRef referenceFor(const ArConfiguration& configuration, const ArImageAnchor& image) {
    const auto& images = configuration.images;
    const auto named = std::find_if(images.begin(), images.end(), [&](const ReferenceRef& reference) {
        return reference && reference->name == image.referenceImage->name;
    });
    return named == images.end() ? nullptr : *named;
}

/// A copy with the identifier, and the reference image if it has one, that the session knows.
std::shared_ptr<const ArAnchor> renamed(const ArAnchor& anchor, const std::string& identifier,
                                        const ReferenceRef& reference) {
    const auto named = [&](auto copy) {
        copy->identifier = identifier;
        return copy;
    };
    if (const auto* plane = dynamic_cast<const ArPlaneAnchor*>(&anchor))
        return named(std::make_shared<ArPlaneAnchor>(*plane));
    const auto* image = dynamic_cast<const ArImageAnchor*>(&anchor);
    if (!image)
        return named(std::make_shared<ArAnchor>(anchor));
    auto copy = std::make_shared<ArImageAnchor>(*image);
    copy->referenceImage = reference;
    return named(std::move(copy));
}

ReferenceRef referenceOf(const ArAnchor& anchor) {
    const auto* image = dynamic_cast<const ArImageAnchor*>(&anchor);
    return image ? image->referenceImage : nullptr;
}

} // namespace

void RecordedAnchors::configure(const ArConfiguration& configuration) { m_configuration = configuration; }

std::vector<RecordedAnchors::Entry>::iterator RecordedAnchors::find(const AnchorRef& recorded) {
    return std::find_if(m_entries.begin(), m_entries.end(), [&](const Entry& entry) {
        return entry.recorded->identifier == recorded->identifier;
    });
}

void RecordedAnchors::takeBack(Entry& entry) {
    if (entry.given)
        m_removed.push_back(std::exchange(entry.given, nullptr));
}

void RecordedAnchors::apply(const AnchorChanges& recorded) {
    for (const AnchorRef& anchor : recorded.removed) {
        const auto entry = find(anchor);
        takeBack(*entry);
        m_entries.erase(entry);
    }
    for (const AnchorRef& anchor : recorded.added)
        m_entries.push_back({anchor});
    for (const AnchorRef& anchor : recorded.updated) {
        const auto entry = find(anchor);
        entry->recorded = anchor;
        entry->isChanged = true;
    }
}

void RecordedAnchors::restart() {
    forgetAll();
    m_entries.clear();
}

void RecordedAnchors::forget(const std::string& identifier) {
    for (Entry& entry : m_entries)
        if (entry.given && entry.given->identifier == identifier)
            takeBack(entry);
}

void RecordedAnchors::forgetAll() {
    for (Entry& entry : m_entries)
        takeBack(entry);
}

AnchorChanges RecordedAnchors::take() {
    AnchorChanges changes;
    for (Entry& entry : m_entries) {
        const bool isChanged = std::exchange(entry.isChanged, false);
        if (entry.given && isChanged) {
            entry.given = renamed(*entry.recorded, entry.given->identifier, referenceOf(*entry.given));
            changes.updated.push_back(entry.given);
        } else if (!entry.given && (entry.given = freshCopy(entry.recorded)))
            changes.added.push_back(entry.given);
    }
    changes.removed = std::exchange(m_removed, {});
    return changes;
}

/// Empty when the configuration does not ask for it.
RecordedAnchors::AnchorRef RecordedAnchors::freshCopy(const AnchorRef& recorded) {
    ReferenceRef reference;
    if (const auto* plane = dynamic_cast<const ArPlaneAnchor*>(recorded.get())) {
        if (!asksFor(m_configuration, *plane))
            return {};
    } else if (const auto* image = dynamic_cast<const ArImageAnchor*>(recorded.get())) {
        reference = referenceFor(m_configuration, *image);
        if (!reference)
            return {};
    }
    const unsigned times = m_timesFound[recorded->identifier]++;
    return renamed(*recorded, times == 0 ? recorded->identifier : makeUuid(recorded->identifier, times),
                   reference);
}

} // namespace kestrin::session

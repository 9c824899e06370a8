#include "session/PictureFinder.h"

#include "session/Texture.h"
#include "session/Uuid.h"

#include <algorithm>
#include <utility>

namespace kestrin::session {

using platform::ArConfiguration;
using platform::ArImageAnchor;
using ReferenceRef = std::shared_ptr<const platform::ArReferenceImage>;

namespace {

constexpr float kFindShare = 0.75F, kFollowShare = 0.4F; // of the picture in view

std::shared_ptr<ArImageAnchor> anchorOf(const Quad& quad, const ReferenceRef& reference,
                                        std::string identifier) {
    auto anchor = std::make_shared<ArImageAnchor>();
    anchor->identifier = std::move(identifier);
    anchor->transform = quad.anchorPose();
    anchor->referenceImage = reference;
    return anchor;
}

} // namespace

PictureFinder::PictureFinder(const Room& room) : m_room(room) {
    for (const Picture& picture : room.pictures)
        m_prints.push_back({&picture});
}

void PictureFinder::configure(const ArConfiguration& configuration) {
    m_follows = configuration.kind == ArConfiguration::Kind::imageOnly;
    m_mostTracked =
        m_follows ? std::max(configuration.maximumNumberOfTrackedImages, 1) : int(m_prints.size());
    for (Print& print : m_prints)
        print.reference = referenceFor(*print.picture, configuration);
}

ReferenceRef PictureFinder::referenceFor(const Picture& picture, const ArConfiguration& configuration) {
    const auto& images = configuration.images;
    const auto isNamed = [&](const ReferenceRef& image) { return image && image->name == picture.name; };
    if (const auto named = std::find_if(images.begin(), images.end(), isNamed); named != images.end())
        return *named;
    if (images.empty())
        return {};
    const PictureLook look(textureImage(picture.texture));
    const auto isAlike = [&](const ReferenceRef& image) {
        return image && look.resembles(PictureLook(image->image));
    };
    const auto alike = std::find_if(images.begin(), images.end(), isAlike);
    return alike == images.end() ? nullptr : *alike;
}

void PictureFinder::look(const Sight& sight, bool canFind, AnchorChanges& changes) {
    for (Print& print : m_prints) {
        if (!print.reference)
            continue;
        const float share = sight.shareOf(print.picture->quad);
        if (print.anchor && m_follows)
            follow(print, share >= kFollowShare, changes);
        else if (!print.anchor && canFind && share >= kFindShare && trackedCount() < m_mostTracked)
            find(print, changes);
    }
}

void PictureFinder::find(Print& print, AnchorChanges& changes) {
    print.anchor = anchorOf(print.picture->quad, print.reference,
                            makeUuid("picture " + print.picture->name, print.timesFound++));
    changes.added.push_back(print.anchor);
}

/// The loss is told once.
void PictureFinder::follow(Print& print, bool isSeen, AnchorChanges& changes) {
    const bool mayTrack = print.anchor->isTracked || trackedCount() < m_mostTracked;
    const bool isTracked = isSeen && mayTrack;
    if (!isTracked && !print.anchor->isTracked)
        return;
    auto anchor = std::make_shared<ArImageAnchor>(*print.anchor);
    anchor->isTracked = isTracked;
    print.anchor = anchor;
    changes.updated.push_back(print.anchor);
}

int PictureFinder::trackedCount() const {
    return int(std::count_if(m_prints.begin(), m_prints.end(),
                             [](const Print& print) { return print.anchor && print.anchor->isTracked; }));
}

void PictureFinder::forget(const std::string& identifier, AnchorChanges& changes) {
    for (Print& print : m_prints)
        if (print.anchor && print.anchor->identifier == identifier)
            changes.removed.push_back(std::exchange(print.anchor, nullptr));
}

void PictureFinder::forgetAll(AnchorChanges& changes) {
    for (Print& print : m_prints)
        if (print.anchor)
            changes.removed.push_back(std::exchange(print.anchor, nullptr));
}

} // namespace kestrin::session

#include "session/AnchorLedger.h"

#include <algorithm>
#include <utility>

namespace kestrin::session {

using platform::ArAnchor;
using platform::ArAnchors;
using AnchorRef = std::shared_ptr<const ArAnchor>;

namespace {

auto find(ArAnchors& anchors, const AnchorRef& anchor) {
    return std::find_if(anchors.begin(), anchors.end(),
                        [&](const AnchorRef& other) { return other->identifier == anchor->identifier; });
}

bool replace(ArAnchors& anchors, const AnchorRef& anchor) {
    const auto found = find(anchors, anchor);
    if (found == anchors.end())
        return false;
    *found = anchor;
    return true;
}

bool erase(ArAnchors& anchors, const AnchorRef& anchor) {
    const auto found = find(anchors, anchor);
    if (found == anchors.end())
        return false;
    anchors.erase(found);
    return true;
}

} // namespace

void AnchorLedger::apply(const AnchorChanges& changes) {
    for (const AnchorRef& anchor : changes.added) {
        m_current.push_back(anchor);
        m_untold.added.push_back(anchor);
    }
    for (const AnchorRef& anchor : changes.updated) {
        replace(m_current, anchor);
        if (!replace(m_untold.added, anchor) && !replace(m_untold.updated, anchor))
            m_untold.updated.push_back(anchor);
    }
    for (const AnchorRef& anchor : changes.removed) {
        erase(m_current, anchor);
        erase(m_untold.updated, anchor);
        if (!erase(m_untold.added, anchor))
            m_untold.removed.push_back(anchor);
    }
}

ArAnchors AnchorLedger::takeAdded() { return std::exchange(m_untold.added, {}); }

ArAnchors AnchorLedger::takeUpdated() { return std::exchange(m_untold.updated, {}); }

ArAnchors AnchorLedger::takeRemoved() { return std::exchange(m_untold.removed, {}); }

} // namespace kestrin::session

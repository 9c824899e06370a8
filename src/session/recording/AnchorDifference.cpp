#include "session/recording/AnchorDifference.h"

#include <utility>

namespace kestrin::session {

AnchorChanges AnchorDifference::look(const platform::ArAnchors& now) {
    AnchorChanges changes;
    auto before = std::exchange(m_known, {});
    for (const auto& anchor : now) {
        if (!m_known.emplace(anchor->identifier, anchor).second)
            continue;
        const auto node = before.extract(anchor->identifier);
        if (node.empty())
            changes.added.push_back(anchor);
        else if (node.mapped() != anchor) // anchors do not change, they are replaced
            changes.updated.push_back(anchor);
    }
    for (const auto& [identifier, anchor] : before)
        changes.removed.push_back(anchor);
    return changes;
}

} // namespace kestrin::session

#pragma once

#include "services/util/Snapshot.h"

#include <algorithm>
#include <memory>
#include <vector>

namespace kestrin {

/// Listeners in the order added, not kept alive: a listener that has died is skipped. Each change makes a new
/// list, so a walk in progress sees the one it began with. Thread: any.
template <class Listener>
class ListenerList {
  public:
    /// The listener's identity, and the way to it while it lives.
    struct Box {
        const Listener* identity;
        std::weak_ptr<Listener> listener;

        /// An address alone would also match whoever lives now where a dead listener lived.
        bool holds(const std::shared_ptr<Listener>& other) const {
            return identity == other.get() && !listener.expired();
        }
    };
    using Boxes = std::vector<Box>;

    std::shared_ptr<const Boxes> boxes() const { return m_boxes.read(); }
    void setBoxes(Boxes boxes) { m_boxes.write(std::move(boxes)); }

    /// False when the listener is already in the list, which then stays as it is.
    bool add(const std::shared_ptr<Listener>& listener) {
        bool added = false;
        m_boxes.update([&](Boxes& boxes) {
            added = std::ranges::none_of(boxes, [&](const Box& box) { return box.holds(listener); });
            if (added)
                boxes.push_back({listener.get(), listener});
        });
        return added;
    }

    /// Removes nothing: what is looked for is the listener, and the list holds boxes. Hosts rely on a
    /// listener staying until the list is emptied.
    void remove(const Listener&) {}

    void clear() { setBoxes({}); }

    template <class Call>
    void forEach(const Call& call) const {
        const auto walked = boxes();
        for (const Box& box : *walked)
            if (const auto listener = box.listener.lock())
                call(*listener);
    }

  private:
    Snapshot<Boxes> m_boxes;
};

} // namespace kestrin

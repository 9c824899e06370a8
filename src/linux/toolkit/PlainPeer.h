#pragma once

#include "linux/toolkit/WidgetPeer.h"

namespace kestrin::gtk {

/// A view without a native widget of its own, or one of an interface resource.
class PlainPeer final : public WidgetPeer<platform::ViewPeer> {
  public:
    explicit PlainPeer(platform::View& view,
                       std::function<void(GtkWidget*, const platform::Size&)> rootAllocated)
        : WidgetPeer(&view) {
        box().onRootAllocated(std::move(rootAllocated));
    }
    explicit PlainPeer(GRef<ViewWidget> widget) : WidgetPeer(std::move(widget)) {}
};

} // namespace kestrin::gtk

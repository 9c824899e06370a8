#pragma once

#include "linux/toolkit/WidgetPeer.h"
#include "platform/Widgets.h"

namespace kestrin::gtk {

/// A `GtkLabel` of an interface resource. Bytes that are no UTF-8 are shown as replacement characters.
class LabelPeer final : public WidgetPeer<platform::LabelPeer> {
  public:
    explicit LabelPeer(GRef<ViewWidget> widget) : WidgetPeer(std::move(widget)) {}
    void setText(const std::string& text) override;
};

} // namespace kestrin::gtk

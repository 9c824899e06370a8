#pragma once

#include "linux/toolkit/SignalHandler.h"
#include "linux/toolkit/WidgetPeer.h"
#include "platform/Widgets.h"

namespace kestrin::gtk {

/// A `GtkButton` of an interface resource.
class ButtonPeer final : public WidgetPeer<platform::ButtonPeer> {
  public:
    explicit ButtonPeer(GRef<ViewWidget> widget);
    void onClick(std::function<void()> clicked) override { m_clicked = std::move(clicked); }

  private:
    std::function<void()> m_clicked;
    SignalHandler m_handler;
};

} // namespace kestrin::gtk

#pragma once

#include "linux/toolkit/WidgetPeer.h"
#include "platform/Widgets.h"

namespace kestrin::gtk {

/// A `GtkSpinner` of an interface resource.
class SpinnerPeer final : public WidgetPeer<platform::SpinnerPeer> {
  public:
    explicit SpinnerPeer(GRef<ViewWidget> widget);
    void setColor(const platform::Color& color) override;

  private:
    GRef<GtkCssProvider> m_style;
};

} // namespace kestrin::gtk

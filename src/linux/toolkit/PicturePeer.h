#pragma once

#include "linux/toolkit/WidgetPeer.h"
#include "platform/Widgets.h"

namespace kestrin::gtk {

/// A `GtkPicture` of an interface resource. Its picture covers it: aspect kept, what sticks out cut off.
class PicturePeer final : public WidgetPeer<platform::ImageViewPeer> {
  public:
    explicit PicturePeer(GRef<ViewWidget> widget);
    void setImage(const platform::Image& image) override;
};

} // namespace kestrin::gtk

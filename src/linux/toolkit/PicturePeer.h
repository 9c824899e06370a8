#pragma once

#include "linux/toolkit/WidgetPeer.h"
#include "platform/Widgets.h"

namespace kestrin::gtk {

/// A `GtkPicture` of an interface resource. How the picture fits is the resource's to say.
class PicturePeer final : public WidgetPeer<platform::ImageViewPeer> {
  public:
    explicit PicturePeer(GRef<ViewWidget> widget);
    void setImage(const platform::Image& image) override;
};

} // namespace kestrin::gtk

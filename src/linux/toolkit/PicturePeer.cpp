#include "linux/toolkit/PicturePeer.h"

#include "linux/toolkit/Texture.h"

namespace kestrin::gtk {

PicturePeer::PicturePeer(GRef<ViewWidget> widget) : WidgetPeer(std::move(widget)) {}

void PicturePeer::setImage(const platform::Image& image) {
    const auto texture = makeTexture(image);
    gtk_picture_set_paintable(GTK_PICTURE(box().content()), GDK_PAINTABLE(texture.get()));
}

} // namespace kestrin::gtk

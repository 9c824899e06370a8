#include "linux/toolkit/PicturePeer.h"

#include "linux/toolkit/Texture.h"

namespace kestrin::gtk {

PicturePeer::PicturePeer(GRef<ViewWidget> widget) : WidgetPeer(std::move(widget)) {
    gtk_picture_set_content_fit(GTK_PICTURE(box().content()), GTK_CONTENT_FIT_COVER);
}

void PicturePeer::setImage(const platform::Image& image) {
    const auto texture = makeTexture(image);
    gtk_picture_set_paintable(GTK_PICTURE(box().content()), GDK_PAINTABLE(texture.get()));
}

} // namespace kestrin::gtk

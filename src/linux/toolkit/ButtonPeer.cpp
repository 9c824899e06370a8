#include "linux/toolkit/ButtonPeer.h"

namespace kestrin::gtk {

ButtonPeer::ButtonPeer(GRef<ViewWidget> widget) : WidgetPeer(std::move(widget)) {
    const auto click = +[](GtkButton*, ButtonPeer* peer) {
        // A copy: what is called may end this peer.
        if (const auto clicked = peer->m_clicked)
            clicked();
    };
    m_handler = {box().content(), "clicked", G_CALLBACK(click), this};
}

} // namespace kestrin::gtk

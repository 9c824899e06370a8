#include "linux/toolkit/SpinnerPeer.h"

namespace kestrin::gtk {

SpinnerPeer::SpinnerPeer(GRef<ViewWidget> widget)
    : WidgetPeer(std::move(widget)), m_style(GRef<GtkCssProvider>::adopt(gtk_css_provider_new())) {
    // Above the application's styles: the colour was asked for by code.
    gtk_style_context_add_provider(gtk_widget_get_style_context(box().content()),
                                   GTK_STYLE_PROVIDER(m_style.get()),
                                   GTK_STYLE_PROVIDER_PRIORITY_APPLICATION + 1);
}

void SpinnerPeer::setColor(const platform::Color& color) {
    const GdkRGBA rgba{color.red, color.green, color.blue, color.alpha};
    const GText text(gdk_rgba_to_string(&rgba));
    const GText style(g_strdup_printf("spinner { color: %s; }", text.get()));
    gtk_css_provider_load_from_data(m_style.get(), style.get(), -1);
}

} // namespace kestrin::gtk

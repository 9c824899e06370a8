#include "linux/web/Inspector.h"

#include <webkit/webkit.h>

namespace kestrin::gtk {

namespace {

WebKitWebView* pageIn(GtkWidget* place) {
    if (WEBKIT_IS_WEB_VIEW(place))
        return WEBKIT_WEB_VIEW(place);
    for (GtkWidget* child = gtk_widget_get_first_child(place); child;
         child = gtk_widget_get_next_sibling(child))
        if (WebKitWebView* const page = pageIn(child))
            return page;
    return nullptr;
}

} // namespace

bool toggleInspector(GtkWidget* place) {
    WebKitWebView* const page = pageIn(place);
    if (!page || !webkit_settings_get_enable_developer_extras(webkit_web_view_get_settings(page)))
        return false;
    WebKitWebInspector* const inspector = webkit_web_view_get_inspector(page);
    if (webkit_web_inspector_get_web_view(inspector))
        webkit_web_inspector_close(inspector);
    else
        webkit_web_inspector_show(inspector);
    return true;
}

} // namespace kestrin::gtk

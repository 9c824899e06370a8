#include "linux/drawing/RenderWidget.h"

#include <utility>

namespace kestrin::gtk {

namespace {

struct RenderWidgetClass {
    GtkWidgetClass parentClass;
};

gpointer parentClass = nullptr;

RenderWidget::State& stateOf(gpointer widget) { return *static_cast<RenderWidget*>(widget)->state; }

// The texture is kept, so that a repaint for another reason makes no new one.
void draw(GtkWidget* widget, GtkSnapshot* snapshot) {
    const graphene_rect_t bounds =
        GRAPHENE_RECT_INIT(0, 0, float(gtk_widget_get_width(widget)), float(gtk_widget_get_height(widget)));
    if (GdkTexture* texture = stateOf(widget).texture.get())
        gtk_snapshot_append_texture(snapshot, texture, &bounds);
}

void allocate(GtkWidget* widget, int, int, int) {
    if (stateOf(widget).allocated)
        stateOf(widget).allocated();
}

void finalize(GObject* object) {
    delete static_cast<RenderWidget*>(static_cast<gpointer>(object))->state;
    G_OBJECT_CLASS(parentClass)->finalize(object);
}

void initializeClass(gpointer klass, gpointer) {
    parentClass = g_type_class_peek_parent(klass);
    G_OBJECT_CLASS(klass)->finalize = finalize;
    GTK_WIDGET_CLASS(klass)->snapshot = draw;
    GTK_WIDGET_CLASS(klass)->size_allocate = allocate;
}

void initialize(GTypeInstance* instance, gpointer) {
    static_cast<RenderWidget*>(static_cast<gpointer>(instance))->state = new RenderWidget::State;
}

GType renderWidgetType() {
    static const GType type =
        g_type_register_static_simple(GTK_TYPE_WIDGET, "KestrinRenderWidget", sizeof(RenderWidgetClass),
                                      initializeClass, sizeof(RenderWidget), initialize, GTypeFlags(0));
    return type;
}

} // namespace

RenderWidget* newRenderWidget() {
    return static_cast<RenderWidget*>(g_object_new(renderWidgetType(), nullptr));
}

void setTexture(RenderWidget& widget, GRef<GdkTexture> texture) {
    widget.state->texture = std::move(texture);
    gtk_widget_queue_draw(&widget.parentInstance);
}

} // namespace kestrin::gtk

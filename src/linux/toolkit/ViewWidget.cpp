#include "linux/toolkit/ViewWidget.h"

#include <algorithm>
#include <cmath>

namespace kestrin::gtk {

namespace {

struct ViewWidgetClass {
    GtkWidgetClass parentClass;
};

gpointer parentClass = nullptr;
GtkBuildableIface* parentBuildable = nullptr;

ViewWidget& view(gpointer instance) { return *static_cast<ViewWidget*>(instance); }

GdkRGBA toGdk(const platform::Color& color) { return {color.red, color.green, color.blue, color.alpha}; }

/// Both edges are rounded, so that neighbours that touch in points touch in pixels.
GtkAllocation toPixels(const platform::Rect& frame) {
    const auto edge = [](double value) { return int(std::lround(std::clamp(value, -1e6, 1e6))); };
    const int left = edge(frame.origin.x), top = edge(frame.origin.y);
    return {left, top, std::max(0, edge(frame.origin.x + frame.size.width) - left),
            std::max(0, edge(frame.origin.y + frame.size.height) - top)};
}

void allocateChild(GtkWidget* child, GtkAllocation place) {
    // A native widget that cannot be that small keeps its least size; the view clips it.
    int least = 0;
    gtk_widget_measure(child, GTK_ORIENTATION_HORIZONTAL, -1, &least, nullptr, nullptr, nullptr);
    place.width = std::max(place.width, least);
    gtk_widget_measure(child, GTK_ORIENTATION_VERTICAL, place.width, &least, nullptr, nullptr, nullptr);
    place.height = std::max(place.height, least);
    gtk_widget_size_allocate(child, &place, -1);
}

void allocate(GtkWidget* widget, int width, int height, int) {
    const ViewWidget::State& state = *view(widget).state;
    for (GtkWidget* child = gtk_widget_get_first_child(widget); child;
         child = gtk_widget_get_next_sibling(child)) {
        if (!gtk_widget_should_layout(child))
            continue;
        const ViewWidget* subview = child == state.content ? nullptr : asViewWidget(child);
        allocateChild(child, subview ? toPixels(subview->state->frame) : GtkAllocation{0, 0, width, height});
    }
    if (state.allocated)
        state.allocated({double(width), double(height)});
}

void measure(GtkWidget* widget, GtkOrientation orientation, int forSize, int* minimum, int* natural, int*,
             int*) {
    const ViewWidget::State& state = *view(widget).state;
    *minimum = *natural = 0;
    if (state.asksForContentSize && state.content && gtk_widget_should_layout(state.content))
        gtk_widget_measure(state.content, orientation, forSize, minimum, natural, nullptr, nullptr);
}

GtkSizeRequestMode requestMode(GtkWidget* widget) {
    const ViewWidget::State& state = *view(widget).state;
    return state.asksForContentSize && state.content ? gtk_widget_get_request_mode(state.content)
                                                     : GTK_SIZE_REQUEST_CONSTANT_SIZE;
}

void drawInside(GtkWidget* widget, GtkSnapshot* snapshot, const graphene_rect_t& bounds) {
    const ViewWidget::State& state = *view(widget).state;
    if (state.background.alpha > 0) {
        const GdkRGBA color = toGdk(state.background);
        gtk_snapshot_append_color(snapshot, &color, &bounds);
    }
    for (GtkWidget* child = gtk_widget_get_first_child(widget); child;
         child = gtk_widget_get_next_sibling(child)) {
        if (child == state.content)
            gtk_snapshot_push_clip(snapshot, &bounds);
        gtk_widget_snapshot_child(widget, child, snapshot);
        if (child == state.content)
            gtk_snapshot_pop(snapshot);
    }
}

void draw(GtkWidget* widget, GtkSnapshot* snapshot) {
    const platform::Border& border = view(widget).state->border;
    const graphene_rect_t bounds =
        GRAPHENE_RECT_INIT(0, 0, float(gtk_widget_get_width(widget)), float(gtk_widget_get_height(widget)));
    GskRoundedRect outline;
    gsk_rounded_rect_init_from_rect(&outline, &bounds, float(border.cornerRadius));

    if (border.cornerRadius > 0)
        gtk_snapshot_push_rounded_clip(snapshot, &outline);
    drawInside(widget, snapshot, bounds);
    if (border.cornerRadius > 0)
        gtk_snapshot_pop(snapshot);

    if (border.width > 0 && border.color.alpha > 0) {
        const float width = float(border.width);
        const float widths[4] = {width, width, width, width};
        const GdkRGBA color = toGdk(border.color);
        const GdkRGBA colors[4] = {color, color, color, color};
        gtk_snapshot_append_border(snapshot, &outline, widths, colors);
    }
}

void dispose(GObject* object) {
    view(object).state->content = nullptr;
    while (GtkWidget* child = gtk_widget_get_first_child(GTK_WIDGET(object)))
        gtk_widget_unparent(child);
    G_OBJECT_CLASS(parentClass)->dispose(object);
}

void finalize(GObject* object) {
    delete view(object).state;
    G_OBJECT_CLASS(parentClass)->finalize(object);
}

void initializeClass(gpointer klass, gpointer) {
    parentClass = g_type_class_peek_parent(klass);
    G_OBJECT_CLASS(klass)->dispose = dispose;
    G_OBJECT_CLASS(klass)->finalize = finalize;
    GtkWidgetClass* widgetClass = GTK_WIDGET_CLASS(klass);
    widgetClass->size_allocate = allocate;
    widgetClass->measure = measure;
    widgetClass->get_request_mode = requestMode;
    widgetClass->snapshot = draw;
    gtk_widget_class_set_css_name(widgetClass, "kestrin-view");
}

void initialize(GTypeInstance* instance, gpointer) { view(instance).state = new ViewWidget::State; }

/// A child given in an interface resource is the content; controllers and the like are GTK's.
void addBuiltChild(GtkBuildable* buildable, GtkBuilder* builder, GObject* child, const char* type) {
    if (!GTK_IS_WIDGET(child)) {
        parentBuildable->add_child(buildable, builder, child, type);
        return;
    }
    view(buildable).state->asksForContentSize = true;
    setContent(view(buildable), GTK_WIDGET(child));
}

void initializeBuildable(gpointer interface, gpointer) {
    parentBuildable = static_cast<GtkBuildableIface*>(g_type_interface_peek_parent(interface));
    static_cast<GtkBuildableIface*>(interface)->add_child = addBuiltChild;
}

/// `action` may unparent the child.
template <class Action>
void forEachSubview(ViewWidget& widget, const Action& action) {
    GtkWidget* next = nullptr;
    for (GtkWidget* child = gtk_widget_get_first_child(asWidget(&widget)); child; child = next) {
        next = gtk_widget_get_next_sibling(child);
        if (child != widget.state->content)
            action(child);
    }
}

/// It stands in its former parent, unmapped.
bool isTakenOut(GtkWidget* child) {
    return gtk_widget_get_parent(child) && !gtk_widget_get_child_visible(child);
}

GType registerType() {
    const GType type =
        g_type_register_static_simple(GTK_TYPE_WIDGET, "KestrinViewWidget", sizeof(ViewWidgetClass),
                                      initializeClass, sizeof(ViewWidget), initialize, GTypeFlags(0));
    const GInterfaceInfo buildable{initializeBuildable, nullptr, nullptr};
    g_type_add_interface_static(type, GTK_TYPE_BUILDABLE, &buildable);
    return type;
}

} // namespace

GType viewWidgetType() {
    static const GType type = registerType();
    return type;
}

ViewWidget* newViewWidget() { return static_cast<ViewWidget*>(g_object_new(viewWidgetType(), nullptr)); }

ViewWidget* asViewWidget(GtkWidget* widget) {
    return G_TYPE_CHECK_INSTANCE_TYPE(widget, viewWidgetType()) ? &view(widget) : nullptr;
}

void setContent(ViewWidget& widget, GtkWidget* content) {
    GtkWidget*& present = widget.state->content;
    if (present == content)
        return;
    if (present)
        gtk_widget_unparent(present);
    present = content;
    if (content)
        gtk_widget_insert_after(content, asWidget(&widget), nullptr);
}

void dropChildrenExcept(ViewWidget& widget, const std::vector<GtkWidget*>& children) {
    forEachSubview(widget, [&](GtkWidget* child) {
        if (std::ranges::find(children, child) != children.end())
            return;
        const ViewWidget* subview = asViewWidget(child);
        if (subview && subview->state->staysRealized)
            gtk_widget_set_child_visible(child, false);
        else
            gtk_widget_unparent(child);
    });
}

void letGo(ViewWidget& widget) {
    forEachSubview(widget, gtk_widget_unparent);
    if (isTakenOut(asWidget(&widget)))
        gtk_widget_unparent(asWidget(&widget));
}

void setChildren(ViewWidget& widget, const std::vector<GtkWidget*>& children) {
    GtkWidget* parent = asWidget(&widget);
    dropChildrenExcept(widget, children);
    GtkWidget* below = widget.state->content;
    for (GtkWidget* child : children) {
        if (isTakenOut(child) && gtk_widget_get_parent(child) != parent)
            gtk_widget_unparent(child);
        GtkWidget* present = gtk_widget_get_parent(child);
        if (present && present != parent) {
            g_warning("a view whose widget already stands in another container cannot become a subview");
            continue;
        }
        if (!present || gtk_widget_get_prev_sibling(child) != below)
            gtk_widget_insert_after(child, parent, below);
        gtk_widget_set_child_visible(child, true);
        below = child;
    }
}

} // namespace kestrin::gtk

#pragma once

#include "platform/View.h"

#include <gtk/gtk.h>

#include <functional>

namespace kestrin::gtk {

/// The widget of one view: a coloured, bordered rectangle with an optional native widget that fills it (the
/// content) and above that the widgets of its subviews, each at its own frame. In an interface resource it is
/// `KestrinViewWidget` and its one child is the content.
struct ViewWidget {
    GtkWidget parentInstance;
    struct State;
    State* state;
};

struct ViewWidget::State {
    platform::Rect frame; ///< in the parent, points; only a parent that is a ViewWidget looks at it
    platform::Color background;
    platform::Border border;
    GtkWidget* content = nullptr;
    /// A view's frame is no size request; a part of an interface resource asks for what its content asks for.
    bool asksForContentSize = false;
    /// A subview that is taken out stays a child, unmapped, until it gets another parent or is let go.
    bool staysRealized = false;
    /// Called inside size-allocate: must not touch the widget tree.
    std::function<void(const platform::Size&)> allocated;
};

GType viewWidgetType();
/// A new widget with a floating reference.
ViewWidget* newViewWidget();
/// Null when it is another kind of widget.
ViewWidget* asViewWidget(GtkWidget* widget);
/// Replaces the content; null takes it out.
void setContent(ViewWidget& widget, GtkWidget* content);
/// Makes the subviews' widgets, and no others, children above the content, in this order. Those that were
/// children already stay realized.
void setChildren(ViewWidget& widget, const std::vector<GtkWidget*>& children);
/// Takes out the subviews' widgets that are not in `children`.
void dropChildrenExcept(ViewWidget& widget, const std::vector<GtkWidget*>& children);
/// Leaves no subview's widget as a child, and the widget itself none that was taken out of its parent.
void letGo(ViewWidget& widget);

inline GtkWidget* asWidget(ViewWidget* widget) { return &widget->parentInstance; }

} // namespace kestrin::gtk

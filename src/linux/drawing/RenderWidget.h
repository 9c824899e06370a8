#pragma once

#include "linux/toolkit/GRef.h"

#include <gtk/gtk.h>

#include <functional>

namespace kestrin::gtk {

/// Shows one texture over its whole area. Thread: main.
struct RenderWidget {
    GtkWidget parentInstance;
    struct State;
    State* state;
};

struct RenderWidget::State {
    GRef<GdkTexture> texture;
    /// Called inside size-allocate: must not touch the widget tree.
    std::function<void()> allocated;
};

/// A new widget with a floating reference.
RenderWidget* newRenderWidget();
void setTexture(RenderWidget& widget, GRef<GdkTexture> texture);

} // namespace kestrin::gtk

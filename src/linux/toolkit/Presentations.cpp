#include "linux/toolkit/Presentations.h"

#include "linux/toolkit/ModalWindow.h"
#include "linux/toolkit/Widget.h"

#include <algorithm>

namespace kestrin::gtk {

namespace {

constexpr int kWidth = 640, kHeight = 480; // points, without a window to measure by
constexpr double kPartOfWindow = 0.85;     // what is behind stays to be seen at the edges

void setSize(GtkWindow* window, GtkWindow* parent) {
    if (!parent)
        return gtk_window_set_default_size(window, kWidth, kHeight);
    const auto part = [](int whole) { return std::max(1, int(whole * kPartOfWindow)); };
    gtk_window_set_default_size(window, part(gtk_widget_get_width(GTK_WIDGET(parent))),
                                part(gtk_widget_get_height(GTK_WIDGET(parent))));
}

} // namespace

Presentations::~Presentations() {
    while (!m_presented.empty())
        gtk_window_destroy(m_presented.front().window);
}

void Presentations::present(GtkWindow* parent, const std::shared_ptr<platform::ViewController>& controller) {
    const auto view = controller->view();
    if (!view)
        return;
    GtkWindow* const window = newModalWindow(parent, parent ? gtk_window_get_title(parent) : nullptr);
    setSize(window, parent);
    gtk_window_set_child(window, widget(*view));
    Presented& presented = m_presented.emplace_back(Presented{this, controller, window});
    const auto appeared = +[](GtkWidget*, Presented* which) { which->controller->viewDidAppear(); };
    g_signal_connect(window, "map", G_CALLBACK(appeared), &presented);
    g_signal_connect(window, "destroy", G_CALLBACK(closed), &presented);
    gtk_window_present(window);
    // The last of the view's controls is the one that goes on: Return is enough.
    gtk_widget_child_focus(GTK_WIDGET(window), GTK_DIR_TAB_BACKWARD);
}

void Presentations::dismiss(const platform::ViewController& controller) {
    const auto found = std::ranges::find_if(
        m_presented, [&](const Presented& each) { return each.controller.get() == &controller; });
    if (found != m_presented.end())
        gtk_window_destroy(found->window);
}

void Presentations::closed(GtkWidget*, Presented* presented) {
    Presentations& owner = *presented->owner;
    // Later: a button of the view may be what closed the window.
    owner.m_dispatch.mainAsync([last = presented->controller] {});
    owner.m_presented.remove_if([&](const Presented& each) { return &each == presented; });
}

} // namespace kestrin::gtk

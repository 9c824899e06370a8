#pragma once

#include "platform/Dispatch.h"
#include "platform/Image.h"

#include <gtk/gtk.h>

#include <filesystem>
#include <functional>
#include <string>

namespace kestrin::gtk {

/// A picture of a shown widget with all that is in it, in the display's pixels, rendered anew from what was
/// painted last. Absent while the widget is not mapped or waits for its next paint. Thread: main.
platform::Image capture(GtkWidget* widget);

/// Captures as soon as that is possible, at most some seconds later; then `done` gets an absent picture. The
/// widget is kept alive meanwhile. Thread: main.
void captureWhenPainted(GtkWidget* widget, platform::Dispatch& dispatch,
                        std::function<void(const platform::Image&)> done);

/// Writes a PNG file, to the side first. An empty text, or why it failed. Thread: any.
std::string writePng(const platform::Image& image, const std::filesystem::path& file);

} // namespace kestrin::gtk

#pragma once

#include "linux/toolkit/SignalHandler.h"

#include <gtk/gtk.h>

#include <vector>

namespace kestrin::bench {

/// Counts the different camera pictures that a window really paints: while it lives, it reads back what the
/// camera's widget shows, after each paint. That takes main milliseconds each time. Thread: main.
class PaintCount {
  public:
    /// `window` is on the screen and holds one camera view.
    explicit PaintCount(GtkWidget* window);

    int pictures() const { return m_pictures; }

  private:
    static void painted(GdkFrameClock* clock, PaintCount* self);

    GtkWidget* m_camera;
    gtk::SignalHandler m_afterPaint;
    std::vector<guint32> m_pixels;
    guint32 m_lastPixel = 0;
    int m_pictures = 0;
};

} // namespace kestrin::bench

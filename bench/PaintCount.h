#pragma once

#include "linux/toolkit/SignalHandler.h"

#include <gtk/gtk.h>

namespace kestrin::bench {

/// Counts the different camera pictures that a window really paints: after each paint it looks at one pixel
/// of what the camera's widget shows. What it costs itself is known and can be taken off. Thread: main.
class PaintCount {
  public:
    /// `window` is on the screen and holds one camera view.
    explicit PaintCount(GtkWidget* window);

    int pictures() const { return m_pictures; }
    /// Processor time of main spent here, seconds.
    double ownSeconds() const { return m_ownSeconds; }

  private:
    static void painted(GdkFrameClock* clock, PaintCount* self);
    void look();

    GtkWidget* m_camera;
    GskRenderer* m_renderer;
    gtk::SignalHandler m_afterPaint;
    guint32 m_lastPixel = 0;
    int m_pictures = 0;
    double m_ownSeconds = 0;
};

/// Processor time that the calling thread has used, seconds.
double threadSeconds();

} // namespace kestrin::bench

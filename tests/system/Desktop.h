#pragma once

#include "support/TemporaryFolder.h"

#include <glib.h>
#include <gtk/gtk.h>

#include <string>
#include <vector>

namespace kestrin::test {

/// A window manager on the X display, for as long as this lives.
class WindowManager {
  public:
    WindowManager();
    ~WindowManager();
    WindowManager(const WindowManager&) = delete;
    WindowManager& operator=(const WindowManager&) = delete;

  private:
    const TemporaryFolder m_folder;
    GPid m_process = 0;
};

/// A window of another application, on a connection of its own. The window manager gives it the focus.
class OtherWindow {
  public:
    OtherWindow();
    ~OtherWindow();
    OtherWindow(const OtherWindow&) = delete;
    OtherWindow& operator=(const OtherWindow&) = delete;

  private:
    void* const m_display;
};

/// What a person's hand does to a window; false when it could not be done.
bool xdotool(const std::string& command, GtkWindow* window, std::vector<std::string> arguments = {});
/// A click at a point of the window, pixels.
bool clickAt(GtkWindow* window, int x, int y);
/// A click on the middle of a widget.
bool clickOn(GtkWidget* widget);
/// Presses a key, as xdotool names it, in whatever window has the focus.
bool press(const std::string& key);
/// The window that stands in front of another, which it belongs to; null when there is none.
GtkWindow* dialogOver(GtkWindow* window);

} // namespace kestrin::test

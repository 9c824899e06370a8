#pragma once

#include "linux-web/MainLoop.h"
#include "linux/drawing/GlGpu.h"
#include "linux/toolkit/DesktopApplication.h"
#include "linux/toolkit/MainLoopDispatch.h"
#include "linux/toolkit/ViewToolkit.h"
#include "support/FakePlatform.h"

#include <ostream>

namespace kestrin::test {

/// Real main loop, widgets and drawing; the rest is the fake's.
class ToolkitPlatform : public FakePlatform {
  public:
    platform::Dispatch& dispatch() override { return mainLoop; }
    platform::LogSink& log() override { return *kept; }
    platform::ViewToolkit& views() override { return widgets; }
    platform::Application& application() override { return desktop; }
    platform::Gpu& gpu() override { return gl; }

    const bool isReady = begin(); ///< GTK, before what needs it
    const std::shared_ptr<FakeLog> kept = std::make_shared<FakeLog>();
    gtk::MainLoopDispatch mainLoop{kept};
    gtk::DesktopApplication desktop{{0, {640, 480}}, mainLoop, kept};
    gtk::ViewToolkit widgets{
        *kept, [this](GtkWidget* root, const platform::Size& size) { desktop.rootAllocated(root, size); }};
    gtk::GlGpu gl{kept};

  private:
    static bool begin();
};

/// A pixel of a composed window: red, green, blue.
struct Pixel {
    int red = 0, green = 0, blue = 0;
    /// Equal but for rounding.
    bool operator==(const Pixel& other) const;
};
std::ostream& operator<<(std::ostream& stream, const Pixel& pixel);

#define EXPECT_PIXEL(actual, ...) EXPECT_EQ(actual, (Pixel __VA_ARGS__))

/// Real widgets in real windows without decoration.
class ToolkitTest : public ::testing::Test {
  protected:
    explicit ToolkitTest(std::shared_ptr<ToolkitPlatform> own = std::make_shared<ToolkitPlatform>());
    ~ToolkitTest() override;

    /// Turns the main loop until everything asked for before this call has reached the screen.
    void settle();

    static std::shared_ptr<platform::View> makeBox(const platform::Rect& frame, const platform::Color& color);
    /// Puts the view into a window of that size and waits until it is shown.
    GtkWindow* show(platform::View& root, int width = 200, int height = 120);
    /// Reads a pixel of the window shown last, by points.
    Pixel pixel(int x, int y);
    /// Pixels a point of the window shown last.
    int scale() const { return gtk_widget_get_scale_factor(GTK_WIDGET(window)); }

    std::shared_ptr<ToolkitPlatform> system;
    GtkWindow* window = nullptr;
};

inline constexpr platform::Color kRed{1, 0, 0, 1}, kGreen{0, 1, 0, 1}, kBlue{0, 0, 1, 1};

} // namespace kestrin::test

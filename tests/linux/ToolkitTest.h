#pragma once

#include "linux/drawing/GlGpu.h"
#include "linux/toolkit/DesktopApplication.h"
#include "linux/toolkit/MainLoopDispatch.h"
#include "linux/toolkit/ViewToolkit.h"
#include "platform/Platform.h"
#include "support/FakeLog.h"

#include <gtest/gtest.h>

#include <ostream>

namespace kestrin::test {

/// The parts of the platform that have to do with GTK; to ask for another one is an error of the test.
class ToolkitPlatform final : public platform::Platform {
  public:
    ToolkitPlatform();

    platform::Dispatch& dispatch() override { return queues; }
    platform::LogSink& log() override { return *kept; }
    platform::ViewToolkit& views() override { return toolkit; }
    platform::Application& application() override { return desktop; }
    platform::Gpu& gpu() override { return graphics; }
    platform::ImageCodec& images() override;
    platform::WebToolkit& web() override;
    platform::WorldTracking& tracking() override;
    platform::CaptureSystem& capture() override;
    platform::Vision& vision() override;
    platform::HttpClient& http() override;
    platform::ReachabilityTargets& reachability() override;
    platform::Storage& storage() override;
    platform::Permissions& permissions() override;
    platform::Device device() const override { return {}; }
    double featureLevel() const override { return 12; }

    const std::shared_ptr<FakeLog> kept = std::make_shared<FakeLog>();
    gtk::MainLoopDispatch queues{kept};
    gtk::DesktopApplication desktop;
    gtk::ViewToolkit toolkit;
    gtk::GlGpu graphics{kept};
};

/// A pixel of a composed window: red, green, blue.
struct Pixel {
    int red = 0, green = 0, blue = 0;
    /// Equal but for rounding.
    bool isNear(const Pixel& other, int tolerance = 2) const;
};
std::ostream& operator<<(std::ostream& stream, const Pixel& pixel);

/// `EXPECT_PRED_FORMAT2(near, pixel, pixel)`.
testing::AssertionResult near(const char*, const char*, const Pixel& actual, const Pixel& wanted);
#define EXPECT_PIXEL(actual, ...) EXPECT_PRED_FORMAT2(::kestrin::test::near, actual, (Pixel __VA_ARGS__))

/// Real widgets in real windows without decoration.
class ToolkitTest : public ::testing::Test {
  protected:
    ToolkitTest();
    ~ToolkitTest() override;

    /// Turns the main loop until `done`; false when that takes longer than `seconds`.
    static bool runUntil(const std::function<bool()>& done, double seconds = 10);
    /// Turns it until everything asked for before this call has reached the screen.
    void settle();

    static std::shared_ptr<platform::View> makeBox(const platform::Rect& frame, const platform::Color& color);
    /// Puts the view into a window of that size and waits until it is shown.
    GtkWindow* show(platform::View& root, int width = 200, int height = 120);
    /// Reads a pixel of the window shown last, by points.
    Pixel pixel(int x, int y);
    /// Pixels a point of the window shown last.
    int scale() const { return gtk_widget_get_scale_factor(GTK_WIDGET(window)); }
    std::vector<std::string> log() const { return system->kept->take(); }

    std::shared_ptr<ToolkitPlatform> system;
    GtkWindow* window = nullptr;
};

inline constexpr platform::Color kRed{1, 0, 0, 1}, kGreen{0, 1, 0, 1}, kBlue{0, 0, 1, 1};

} // namespace kestrin::test

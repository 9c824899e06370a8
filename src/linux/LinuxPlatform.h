#pragma once

#include "linux/PlatformOptions.h"
#include "platform/Platform.h"

namespace kestrin::gtk {

/// The platform on Linux: GTK 4, WebKitGTK, OpenGL, libsoup. Install it with `platform::installPlatform` once
/// GTK can be used, before anything else of Kestrin runs.
class LinuxPlatform final : public platform::Platform {
  public:
    /// Initialises GTK when the host has not. Null, with a line in the log, when there is no display. Thread:
    /// main.
    static std::shared_ptr<LinuxPlatform> make(const Options& options);
    /// Thread: main.
    ~LinuxPlatform() override;

    platform::Dispatch& dispatch() override;
    platform::LogSink& log() override;
    platform::ViewToolkit& views() override;
    platform::Application& application() override;
    platform::ImageCodec& images() override;
    platform::WebToolkit& web() override;
    /// A source that supports nothing when the options name none.
    platform::WorldTracking& tracking() override;
    platform::CaptureSystem& capture() override;
    platform::Gpu& gpu() override;
    platform::Vision& vision() override;
    platform::HttpClient& http() override;
    platform::ReachabilityTargets& reachability() override;
    platform::Storage& storage() override;
    platform::Permissions& permissions() override;
    platform::Device device() const override;
    double featureLevel() const override;

    /// Tells the framework that the application ends, once. A host built on `GtkApplication` need not call
    /// it. Thread: main.
    void willTerminate();

  private:
    struct Parts;
    explicit LinuxPlatform(std::unique_ptr<Parts> parts);

    const std::unique_ptr<Parts> m_parts;
};

} // namespace kestrin::gtk

#pragma once

#include "platform/Application.h"
#include "platform/ArSession.h"
#include "platform/Capture.h"
#include "platform/Dispatch.h"
#include "platform/Gpu.h"
#include "platform/Image.h"
#include "platform/Log.h"
#include "platform/Network.h"
#include "platform/Permission.h"
#include "platform/Storage.h"
#include "platform/Vision.h"
#include "platform/WebView.h"
#include "platform/Widgets.h"

#include <memory>

namespace kestrin::platform {

/// All that Kestrin needs from an operating system. Thread: any, for the accessors themselves.
class Platform {
  public:
    virtual ~Platform() = default;
    virtual Dispatch& dispatch() = 0;
    virtual LogSink& log() = 0;
    virtual ViewToolkit& views() = 0;
    virtual Application& application() = 0;
    virtual ImageCodec& images() = 0;
    virtual WebToolkit& web() = 0;
    virtual WorldTracking& tracking() = 0;
    virtual CaptureSystem& capture() = 0;
    virtual Gpu& gpu() = 0;
    virtual Vision& vision() = 0;
    virtual HttpClient& http() = 0;
    virtual ReachabilityTargets& reachability() = 0;
    virtual Storage& storage() = 0;
    virtual Permissions& permissions() = 0;
    virtual Device device() const = 0;
    /// What version gates compare with, such as 11.3.
    virtual double featureLevel() const = 0;
};

/// Installed once, before anything else of Kestrin runs, and kept until the next one is installed.
void installPlatform(std::shared_ptr<Platform> platform);
/// The installed platform. Thread: any.
Platform& platform();

} // namespace kestrin::platform

#pragma once

#include "linux/network/HostMap.h"
#include "linux/toolkit/LogLevel.h"
#include "platform/ArSession.h"
#include "platform/Matrix.h"
#include "platform/Orientation.h"

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>

namespace kestrin::gtk {

/// What a host application can say about its platform. Every field has a working default.
struct Options {
    /// In reverse-domain form, as in `GtkApplication`; names the documents folder, and its vendor part the
    /// device identifier.
    std::string applicationId = "org.kestrin.Application";
    /// The main bundle: a folder, or a `resource:///prefix` of a registered GResource, with `info.json`.
    std::string bundle;
    LogLevel logLevel = LogLevel::info;
    /// Where connections to a host really go.
    HostMap hostMap;
    /// The camera: its name or device file, or a part of the name; "file:PATH" for a video that plays again
    /// and again, "test" for a generated picture; empty takes any.
    std::string camera;
    /// Left and right of its picture change places.
    bool mirrorsCamera = false;
    /// Makes the source of world tracking. It may keep the orientation, which lives as long as the platform.
    std::function<std::shared_ptr<platform::WorldTracking>(const platform::InterfaceOrientation&)>
        worldTracking;
    /// Whether that source uses a real camera, which then needs a permission.
    bool trackingUsesCamera = false;
    /// The interface orientation code 1..4; 0 follows the shape of the view: wider than high is 3, else 1.
    int orientation = 0;
    /// Points; what counts as the screen when the display has no monitor.
    platform::Size screenSize{1280, 720};
    /// What nobody needs to be asked for: "camera", "photos".
    std::set<std::string> granted;
    /// Whether an application in debug mode (`KestrinSettings::getDebugEnabled`) offers the web inspector in
    /// its page's context menu. Unless said otherwise it does in builds without NDEBUG only.
    std::optional<bool> developerExtras;
};

} // namespace kestrin::gtk

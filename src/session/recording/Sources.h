#pragma once

#include "platform/ArSession.h"
#include "platform/Orientation.h"

#include <filesystem>
#include <functional>
#include <memory>

namespace kestrin::session {

/// What `gtk::Options::worldTracking` takes.
using TrackingSource =
    std::function<std::shared_ptr<platform::WorldTracking>(const platform::InterfaceOrientation&)>;

/// A drawn room, 640x480 at 30 frames a second: the built-in one, or what a JSON file describes. Throws
/// std::runtime_error that says what is wrong with the file. Thread: any.
TrackingSource simulation(const std::filesystem::path& room = {});
/// A recording in real time, again and again. Throws std::runtime_error when it is damaged or none. Thread:
/// any.
TrackingSource recording(const std::filesystem::path& folder);
/// The camera that `gtk::Options::camera` names, 640x480, without tracking. For a device, set
/// `trackingUsesCamera` too. Thread: any.
TrackingSource camera();

} // namespace kestrin::session

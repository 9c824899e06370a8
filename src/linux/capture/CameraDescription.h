#pragma once

#include "linux/capture/GstParts.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace kestrin::gtk {

/// What a camera is made from. Thread: any.
struct CameraDescription {
    std::string name;
    std::function<GstElement*()> makeSource = {}; ///< gives a new element, or null
    bool isLive = true;                           ///< else a file
    GstCapsPtr offered = {};                      ///< what it can give; null when that shows only later
    std::string devicePath = {};                  ///< of the kernel's device, if that drives it
    bool isDirect = false;                        ///< this process opens that itself
    bool canFocus = false;                        ///< by itself
    std::string fault = {};                       ///< why it cannot be opened, if that is known
};

using CameraDescriptions = std::vector<std::shared_ptr<const CameraDescription>>;

/// Those with this name or device file; if there is none, those whose name has it as a part, whatever the
/// case. An empty name means all.
CameraDescriptions camerasNamed(const CameraDescriptions& cameras, const std::string& name);

/// Without those of PipeWire whose device is also offered directly.
CameraDescriptions oncePerDevice(const CameraDescriptions& cameras);

} // namespace kestrin::gtk

#pragma once

#include "Arguments.h"

#include "platform/Dispatch.h"

#include <string>

namespace kestrin::view {

/// The cameras there are, for a person to read.
Ending listCameras();

/// Whether this names a device, not a file or the test picture.
bool isRealCamera(const std::string& name);

/// Why no camera can be told by the name, in one line; empty when one can. Takes its time.
std::string faultOfCamera(const std::string& name, platform::Dispatch& dispatch);

} // namespace kestrin::view

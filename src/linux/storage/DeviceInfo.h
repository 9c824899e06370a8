#pragma once

#include "platform/Storage.h"

#include <string_view>

namespace kestrin::gtk {

/// What this machine says of itself. Reads a few small files. Thread: any.
platform::Device readDevice(const std::string& applicationId);

/// The UUID (upper case) by which all applications of one vendor know this machine: a keyed hash, out of
/// which the machine id cannot be had. The vendor of "org.example.Viewer" is "org.example".
std::string vendorIdentifier(std::string_view machineId, const std::string& applicationId);

} // namespace kestrin::gtk

#pragma once

#include <gst/gst.h>

#include <string>
#include <vector>

namespace kestrin::gtk {

/// What a camera offers, for a person to read: a line for each kind of picture, with its sizes in pixels and
/// their rates in frames a second, such as "YUY2 640x480 (30, 15), 1280x720 (10)". Thread: any.
std::vector<std::string> modeTexts(const GstCaps* offered);

} // namespace kestrin::gtk

#pragma once

#include "platform/Capture.h"

#include <string>

namespace kestrin::session::test {

/// Writes a picture for a person to look at. False when the file cannot be written.
bool writePng(const platform::PixelBuffer& picture, const std::string& file);

} // namespace kestrin::session::test

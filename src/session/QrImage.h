#pragma once

#include "platform/Image.h"

#include <string>

namespace kestrin::session {

/// A QR code with its quiet zone, several pixels a module. Text (UTF-8) that does not fit into a code gives
/// an absent image. Thread: any.
platform::Image makeQrImage(const std::string& text);

} // namespace kestrin::session

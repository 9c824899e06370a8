#pragma once

#include "platform/Image.h"

#include <cstdint>
#include <vector>

namespace kestrin::gtk {

/// The pixels as cairo and GDK have them: 32-bit words, alpha highest, colours premultiplied. Thread: any, as
/// for the next.
std::vector<std::uint32_t> toArgb32(const platform::Image& image);
/// The way back, in place, from the words' bytes.
void fromArgb32(std::vector<std::uint8_t>& pixels);

} // namespace kestrin::gtk

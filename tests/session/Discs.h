#pragma once

#include "platform/Capture.h"
#include "platform/Matrix.h"

#include <vector>

namespace kestrin::session::test {

/// The centres of the black discs on white squares in a picture, in pixels; (0, 0) is the top-left corner of
/// the top-left pixel. Discs that touch the border are left out.
std::vector<platform::Point> findDiscs(const platform::PixelPlane& luma);

} // namespace kestrin::session::test

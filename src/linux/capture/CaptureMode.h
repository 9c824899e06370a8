#pragma once

#include "linux/capture/GstParts.h"
#include "platform/Capture.h"

#include <vector>

namespace kestrin::gtk {

/// Of what a camera can give, that whose pictures come nearest to the size: uncompressed ones and JPEG where
/// it has them. No smaller rate than `slowest` frames a second, if there is another. Null for null and for
/// nothing. Thread: any.
GstCapsPtr captureMode(const GstCaps* offered, int width, int height, double slowest);

/// The rates of such caps, in their order, each once.
std::vector<platform::FrameRateRange> frameRates(const GstCaps* caps);

} // namespace kestrin::gtk

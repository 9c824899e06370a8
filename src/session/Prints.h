#pragma once

#include "session/Noise.h"

namespace kestrin::session {

// Pictures that are shown once: the colour at a point.

Color rug(Point2 point);
Color books(Point2 point);
/// What is seen through the window.
Color view(Point2 point);
Color poster(Point2 point);
Color postcard(Point2 point);

} // namespace kestrin::session

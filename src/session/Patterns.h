#pragma once

#include "session/Noise.h"

namespace kestrin::session {

// Materials that repeat without a seam: the colour at a point of the tile.

Color plain(Point2 point);
Color plaster(Point2 point);
Color planks(Point2 point);
Color oak(Point2 point);
Color tiles(Point2 point);
Color carpet(Point2 point);
Color fabric(Point2 point);
Color checker(Point2 point);

} // namespace kestrin::session

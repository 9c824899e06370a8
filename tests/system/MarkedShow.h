#pragma once

#include "Spread.h"
#include "SteppedShow.h"

#include "session/PinholeCamera.h"

namespace kestrin::test {

struct MarkedOptions {
    int orientation = 0; ///< 0 follows the window's shape
    session::Mounting mounting = session::Mounting::upright;
    std::string fault = "{}"; ///< of the page, on purpose
};

/// A page draws discs at known world points; marks are painted in the room at the same points. Where both are
/// seen is read from pixels: the marks from the camera layer alone, the discs from the composed window.
class MarkedShow : public SteppedShow {
  public:
    explicit MarkedShow(const MarkedOptions& options);

    /// Goes on by so many poses: how far each disc is from its mark, pixels; very far for one without a mark.
    Spread measure(int poses);
};

} // namespace kestrin::test

#pragma once

#include "Stage.h"

#include <array>
#include <vector>

namespace kestrin::test {

/// A stage whose session goes on frame by frame, each looked at when the page has drawn it and both layers of
/// the window show it and stay as they are.
class SteppedShow {
  public:
    explicit SteppedShow(const StageOptions& options);

    /// Makes the next frame; false at the end, and when nothing new is seen.
    bool next();
    const platform::Image& camera() const { return m_camera; }     ///< the camera layer alone
    const platform::Image& composed() const { return m_composed; } ///< with the page above it
    /// The centres of the whole discs that the page has drawn, pixels of the window.
    std::vector<platform::Point> discs(const std::array<double, 3>& color, double radius) const;

    Stage& stage() { return m_stage; }

  private:
    bool begin();
    double reportedTime() const;
    bool showsNewFrame();

    Stage m_stage;
    platform::Image m_camera, m_candidate, m_composed;
    bool m_hasBegun = false;
    int m_steady = 0;
};

} // namespace kestrin::test

#pragma once

#include <string>

namespace kestrin::gtk {

/// The controls of a camera that the kernel drives, by its device file. Thread: any.
class V4l2Controls {
  public:
    /// An empty path has no controls.
    explicit V4l2Controls(std::string path) : m_path(std::move(path)) {}

    bool canFocusContinuously() const;
    void focusContinuously() const;
    /// Lets the camera slow down where it is dark.
    void allowSlowerRate() const;

  private:
    std::string m_path;
};

} // namespace kestrin::gtk

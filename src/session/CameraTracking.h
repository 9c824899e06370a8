#pragma once

#include "session/SourcedTracking.h"

namespace kestrin::session {

struct CameraOptions {
    int width = 640, height = 480; ///< of the pictures, pixels, 16 to 8192
    double fieldOfView = 60;       ///< of the longer side, degrees, 10 to 150
    Mounting mounting = Mounting::upright;
    SessionOptions session; ///< its pacing and speed are the camera's
};

/// Sessions that show a camera and do not know where it is: every frame has the identity pose, and tracking
/// never gets beyond its beginning. The camera is the platform's, which outlives the sessions. Thread: any.
class CameraTracking final : public SourcedTracking {
  public:
    explicit CameraTracking(const CameraOptions& options);

  protected:
    std::unique_ptr<FrameSource> makeSource() const override;

  private:
    const CameraModel m_model;
    const std::function<void(std::string_view)> m_log;
};

} // namespace kestrin::session

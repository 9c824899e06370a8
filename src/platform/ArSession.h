#pragma once

#include "platform/Capture.h"
#include "platform/Image.h"
#include "platform/Matrix.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kestrin::platform {

/// Why tracking is limited.
enum class TrackingReason { none, initializing, excessiveMotion, insufficientFeatures, relocalizing };

/// Focal lengths and principal point in pixels of the captured picture; (0, 0) is the top-left corner of the
/// top-left pixel.
struct Intrinsics {
    double fx = 0, fy = 0, cx = 0, cy = 0;
};

/// The camera of one frame. Orientations are the interface orientation codes 1 portrait, 2 portrait upside
/// down, 3 landscape right, 4 landscape left. Immutable. Thread: any.
class ArCamera {
  public:
    virtual ~ArCamera() = default;
    /// Camera to world, metres, y up; the camera looks along its -Z.
    virtual Matrix transform() const = 0;
    virtual TrackingReason trackingReason() const = 0;
    virtual Intrinsics intrinsics() const = 0;
    virtual Size imageResolution() const = 0;
    /// The projection with which content lands on the picture when the picture fills the viewport (aspect
    /// fill, centred) in the given orientation. Only the shape of the viewport counts.
    virtual Matrix projection(int orientation, Size viewport, double zNear, double zFar) const = 0;
    /// Where a world point is seen in the viewport, from its top-left corner.
    virtual Point projectPoint(const Vector3& point, int orientation, Size viewport) const = 0;
    /// From normalised picture coordinates (0..1, y down) to normalised viewport coordinates.
    virtual AffineTransform displayTransform(int orientation, Size viewport) const = 0;
};

/// A picture to be recognised.
struct ArReferenceImage {
    std::string name;
    Image image;
    double physicalWidth = 0; ///< metres
    /// Metres; the height follows the picture's shape.
    Size physicalSize() const;
};

struct ArAnchor {
    std::string identifier; ///< UUID text, upper case
    Matrix transform;       ///< anchor to world, metres
    virtual ~ArAnchor() = default;
};

/// The mesh of a plane in the anchor's frame (y = 0), metres.
struct ArPlaneGeometry {
    std::vector<Vector3> vertices;
    std::vector<std::int16_t> triangleIndices; ///< three a triangle
};

/// A plane: its normal is the anchor's +Y.
struct ArPlaneAnchor : ArAnchor {
    Vector3 center; ///< in the anchor's frame, metres
    Vector3 extent; ///< along the anchor's x and z axes, metres; y is 0
    bool isVertical = false;
    std::shared_ptr<const ArPlaneGeometry> geometry;
};

/// A recognised picture: +X is its right, -Z its top, +Y comes out of it.
struct ArImageAnchor : ArAnchor {
    std::shared_ptr<const ArReferenceImage> referenceImage; ///< never empty
    bool isTracked = true;
};

using ArAnchors = std::vector<std::shared_ptr<const ArAnchor>>;

/// One moment of the session.
struct ArFrame {
    double timestamp = 0;         ///< seconds since the session began
    PixelBufferRef capturedImage; ///< may be empty before the first picture
    std::shared_ptr<const ArCamera> camera;
    std::optional<double> ambientIntensity; ///< lumens; about 1000 in a well lit room
    ArAnchors anchors;
};

struct ArConfiguration {
    enum class Kind { world, imageOnly };
    enum PlaneDetection : unsigned { kHorizontal = 1, kVertical = 2 };

    Kind kind = Kind::world;
    unsigned planeDetection = 0; ///< bits of PlaneDetection; world only
    bool autoFocusEnabled = true;
    bool lightEstimationEnabled = false;
    std::vector<std::shared_ptr<const ArReferenceImage>>
        images;                           ///< to detect (world) or to track (image only)
    int maximumNumberOfTrackedImages = 0; ///< image only
};

enum ArRunOptions : unsigned { kResetTracking = 1, kRemoveExistingAnchors = 2 };

/// Told what the session sees. Thread: session, one call at a time.
class ArSessionDelegate {
  public:
    virtual ~ArSessionDelegate() = default;
    virtual void didUpdateFrame(const std::shared_ptr<const ArFrame>& frame) = 0;
    virtual void didAddAnchors(const ArAnchors& anchors) = 0;
    virtual void didUpdateAnchors(const ArAnchors& anchors) = 0;
    virtual void didRemoveAnchors(const ArAnchors& anchors) = 0;
};

/// World tracking: where the camera is and what it sees. Thread: any, unless said otherwise.
class ArSession {
  public:
    virtual ~ArSession() = default;
    /// Called at most once, before the first run.
    virtual void setDelegate(std::weak_ptr<ArSessionDelegate> delegate) = 0;
    /// Starts or reconfigures. `currentFrame` exists when it returns (intrinsics, identity pose). Events of
    /// an earlier run are not delivered any more. Never waits for the session thread.
    virtual void run(const ArConfiguration& configuration, unsigned options) = 0;
    /// Stops the frames; the current frame stays. Never waits for the session thread.
    virtual void pause() = 0;
    /// The newest frame; replaced before the delegate hears of it. Empty before the first run.
    virtual std::shared_ptr<const ArFrame> currentFrame() const = 0;
    /// That of the last run, empty before.
    virtual std::optional<ArConfiguration> configuration() const = 0;
    /// Forgets an anchor, so that it may be found afresh; after the callback when called inside one.
    virtual void removeAnchor(const std::string& identifier) = 0;
};

/// What the device can track, and the sessions that do.
class WorldTracking {
  public:
    virtual ~WorldTracking() = default;
    virtual bool isSupported() const = 0;
    virtual std::shared_ptr<ArSession> makeSession() = 0;
};

} // namespace kestrin::platform

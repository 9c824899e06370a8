#pragma once

#include "session/Nv12Pass.h"
#include "session/PinholeCamera.h"
#include "session/RoomMesh.h"

#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace kestrin::session {

/// Draws a room as a camera without distortion sees it. Thread: the one that made it.
class RoomRenderer {
  public:
    /// The renderer, or why there is none.
    static std::variant<std::unique_ptr<RoomRenderer>, std::string> make(const Room& room,
                                                                         const CameraModel& model);
    /// `sensorPose` is camera to world.
    void render(const Matrix& sensorPose, Nv12Buffer& picture);

  private:
    struct Drawable {
        unsigned texture;
        int first, count;
    };
    RoomRenderer(std::unique_ptr<OffscreenContext> context, const CameraModel& model);
    bool isValid() const;
    void makeTarget();
    void upload(const RoomMesh& mesh);
    void uploadLight(const LightMap& light);
    std::vector<Drawable> uploadTextures(const std::vector<RoomMesh::Batch>& batches);
    void drawScene(const Matrix& worldToClip) const;

    std::unique_ptr<OffscreenContext> m_context;
    CameraModel m_model;
    Nv12Pass m_pass;
    unsigned m_surfaceProgram, m_markProgram;
    unsigned m_framebuffer = 0, m_target = 0, m_light = 0;
    unsigned m_surfaceVertices = 0, m_markVertices = 0; ///< vertex arrays
    int m_markCount = 0;
    std::vector<Drawable> m_surfaces, m_pictures;
};

} // namespace kestrin::session

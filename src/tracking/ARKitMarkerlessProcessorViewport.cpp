#include "tracking/ARKitMarkerlessProcessor.h"

#include "platform/Platform.h"
#include "services/util/Format.h"
#include "services/util/SystemLevel.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace kestrin {

using namespace platform;

namespace {

// Chosen for pages whose unit is far smaller than a metre; a page with other units rebuilds the depth terms.
constexpr double kNear = 1.0;
constexpr double kFar = 200000.0;

struct Turn {
    Vector4 right, up; ///< the first two columns
    const char* line;
    bool portrait;
};

/// Null for a code without a meaning.
const Turn* turnFor(int orientation) {
    static constexpr Turn kTurns[] = {
        {{0, 1, 0, 0}, {-1, 0, 0, 0}, "Kestrin - Orientation=PORTRAIT", true},
        {{0, -1, 0, 0}, {1, 0, 0, 0}, "Kestrin - Orientation=PORTRAIT_DOWN", true},
        {{1, 0, 0, 0}, {0, 1, 0, 0}, "Kestrin - Orientation=LANDSCAPE_RIGHT", false},
        {{-1, 0, 0, 0}, {0, -1, 0, 0}, "Kestrin - Orientation=LANDSCAPE_LEFT", false},
    };
    return orientation >= 1 && orientation <= 4 ? &kTurns[orientation - 1] : nullptr;
}

} // namespace

void ARKitMarkerlessProcessor::setViewport(int width, int height) {
    {
        const std::lock_guard lock(m_mutex);
        if (width == init_width && height == init_height)
            return;
        init_width = width;
        init_height = height;
        viewportChanged = true;
    }
    log("Kestrin - Renderer - updating viewport w=%i h=%i", width, height);
    updateProjectionMatrix();
}

void ARKitMarkerlessProcessor::updateProjectionMatrix() {
    int width = 0;
    int height = 0;
    bool changed = false;
    {
        const std::lock_guard lock(m_mutex);
        width = init_width;
        height = init_height;
        // Cleared before anyone is told: listeners resize, and come back here.
        changed = std::exchange(viewportChanged, false);
    }
    if (changed)
        updateProjectionMatrixWith(width, height);
    Matrix projection;
    {
        const std::lock_guard lock(m_mutex);
        projection = projection_matrix;
        width = init_width;
        height = init_height;
    }
    if (const auto listener = target()) {
        listener->onUpdateProjectionMatrix(projection);
        listener->onUpdateViewport({double(width), double(height)});
    }
}

void ARKitMarkerlessProcessor::updateProjectionMatrixWith(int width, int height) {
    if (!systemIsAtLeast(11.0))
        return;
    log("Kestrin - Renderer - updating projection w=%i h=%i", width, height);
    int orientation = 0;
    {
        const std::lock_guard lock(m_mutex);
        orientation = last_orientation;
    }
    const auto frame = session->currentFrame();
    Matrix projection;
    if (frame && frame->camera)
        projection =
            frame->camera->projection(orientation, {double(width / 2), double(height / 2)}, kNear, kFar);
    const std::lock_guard lock(m_mutex);
    projection_matrix = projection;
    last_projection_width = width;
    last_projection_height = height;
}

void ARKitMarkerlessProcessor::updateUIOrientationMatrix() {
    const int orientation = platform::platform().application().orientation();
    const Turn* turn = turnFor(orientation);
    int smaller = 0;
    int larger = 0;
    {
        const std::lock_guard lock(m_mutex);
        if (orientation == last_orientation)
            return;
        ui_orientation_matrix = Matrix::identity();
        if (!turn)
            return;
        ui_orientation_matrix[0] = turn->right;
        ui_orientation_matrix[1] = turn->up;
        last_orientation = orientation;
        std::tie(smaller, larger) = std::minmax({init_width, init_height});
    }
    logLine(turn->line);
    if (turn->portrait)
        setViewport(smaller, larger);
    else
        setViewport(larger, smaller);
}

AffineTransform ARKitMarkerlessProcessor::getOrientationWithViewport(const Size& viewport) const {
    const auto frame = session ? session->currentFrame() : nullptr;
    int orientation = 0;
    {
        const std::lock_guard lock(m_mutex);
        orientation = last_orientation;
    }
    return frame && frame->camera ? inverse(frame->camera->displayTransform(orientation, viewport))
                                  : AffineTransform{};
}

} // namespace kestrin

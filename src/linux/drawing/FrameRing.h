#pragma once

#include "linux/toolkit/GRef.h"
#include "platform/Log.h"
#include "platform/Matrix.h"

#include <epoxy/gl.h>
#include <gdk/gdk.h>

#include <array>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>

namespace kestrin::gtk {

/// A few textures that go round between a drawing thread, which fills them, and the toolkit, which shows the
/// newest one for as long as it likes. Owns the two GL contexts that this takes: one for the drawing thread,
/// one that lets the toolkit read the textures. Made and destroyed on main.
class FrameRing : public std::enable_shared_from_this<FrameRing> {
  public:
    /// Null, with a line in the log, when GL fails.
    static std::shared_ptr<FrameRing> make(platform::LogSink& log);
    ~FrameRing();

    GdkGLContext* drawingContext() const { return m_drawing.get(); }

    struct Target {
        std::size_t slot = 0;
        GLuint framebuffer = 0;
        int width = 0, height = 0;
    };
    /// Something to draw into, of that size in pixels; none when the toolkit holds all of them.
    /// Thread: drawing, with its context current.
    std::optional<Target> begin(const platform::Size& pixels);
    /// What was begun is done, and becomes the newest. Thread: drawing.
    void publish(const Target& target);
    /// What was begun is not to be shown. Thread: drawing.
    void drop(const Target& target);
    /// Before the drawing context goes. Thread: drawing, with its context current.
    void deleteFramebuffers();

    /// What was published since the last call; empty when nothing was. Thread: main.
    GRef<GdkTexture> takeNewest();

  private:
    enum class State { free, drawing, newest, shown };
    struct Slot {
        GLuint texture = 0, framebuffer = 0;
        int width = 0, height = 0;
        State state = State::free; // guarded
        std::uint64_t freedAt = 0; // guarded
    };
    struct Hold;

    FrameRing(GRef<GdkGLContext> drawing, GRef<GdkGLContext> reading);
    Slot* longestFree();
    void setFree(Slot& slot);
    static void shape(Slot& slot, int width, int height);

    const GRef<GdkGLContext> m_drawing, m_reading;
    std::mutex m_mutex;
    std::array<Slot, 4> m_slots;
    std::uint64_t m_clock = 0; // guarded
};

} // namespace kestrin::gtk

#include "linux/drawing/FrameRing.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

namespace kestrin::gtk {

namespace {

/// A context that needs no window and shares its textures with the toolkit's.
GRef<GdkGLContext> makeContext(GFailure& failure) {
    GdkDisplay* display = gdk_display_get_default();
    auto context = GRef<GdkGLContext>::adopt(gdk_display_create_gl_context(display, failure.out()));
    if (context && !gdk_gl_context_realize(context.get(), failure.out()))
        context.reset();
    return context;
}

int pixelCount(double length) {
    GLint most = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &most);
    return std::clamp(int(std::lround(std::min(length, 1e6))), 1, int(most));
}

} // namespace

/// Keeps a slot from being drawn into for as long as the toolkit has its texture.
struct FrameRing::Hold {
    std::shared_ptr<FrameRing> ring;
    Slot& slot;

    static void end(gpointer data) {
        const std::unique_ptr<Hold> hold(static_cast<Hold*>(data));
        const std::lock_guard lock(hold->ring->m_mutex);
        hold->ring->setFree(hold->slot);
    }
};

std::shared_ptr<FrameRing> FrameRing::make(platform::LogSink& log) {
    GFailure failure;
    auto drawing = makeContext(failure);
    auto reading = drawing ? makeContext(failure) : GRef<GdkGLContext>();
    if (drawing && reading)
        return std::shared_ptr<FrameRing>(new FrameRing(std::move(drawing), std::move(reading)));
    log.write(std::string("Kestrin - No GL context can be made: ") + failure.text());
    return nullptr;
}

FrameRing::FrameRing(GRef<GdkGLContext> drawing, GRef<GdkGLContext> reading)
    : m_drawing(std::move(drawing)), m_reading(std::move(reading)) {}

FrameRing::~FrameRing() {
    // The toolkit may let the last texture go in the middle of a frame of its own.
    const auto present = GRef<GdkGLContext>::ref(gdk_gl_context_get_current());
    gdk_gl_context_make_current(m_reading.get());
    for (const Slot& slot : m_slots)
        glDeleteTextures(1, &slot.texture);
    if (present)
        gdk_gl_context_make_current(present.get());
    else
        gdk_gl_context_clear_current();
}

std::optional<FrameRing::Target> FrameRing::begin(const platform::Size& pixels) {
    Slot* const slot = longestFree();
    if (!slot)
        return std::nullopt;
    shape(*slot, pixelCount(pixels.width), pixelCount(pixels.height));
    return Target{std::size_t(slot - m_slots.data()), slot->framebuffer, slot->width, slot->height};
}

/// The one that the toolkit gave back first: the GPU is surely done with reading it.
FrameRing::Slot* FrameRing::longestFree() {
    const std::lock_guard lock(m_mutex);
    Slot* best = nullptr;
    for (Slot& slot : m_slots)
        if (slot.state == State::free && (!best || slot.freedAt < best->freedAt))
            best = &slot;
    if (best)
        best->state = State::drawing;
    return best;
}

void FrameRing::shape(Slot& slot, int width, int height) {
    if (slot.width == width && slot.height == height)
        return;
    slot.width = width;
    slot.height = height;
    if (!slot.texture) {
        glGenTextures(1, &slot.texture);
        glGenFramebuffers(1, &slot.framebuffer);
    }
    glBindTexture(GL_TEXTURE_2D, slot.texture);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, width, height, 0, GL_RGBA, GL_UNSIGNED_BYTE, nullptr);
    glBindFramebuffer(GL_FRAMEBUFFER, slot.framebuffer);
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, slot.texture, 0);
}

void FrameRing::setFree(Slot& slot) {
    slot.state = State::free;
    slot.freedAt = ++m_clock;
}

void FrameRing::publish(const Target& target) {
    const std::lock_guard lock(m_mutex);
    for (Slot& slot : m_slots)
        if (slot.state == State::newest)
            setFree(slot); // nobody looked at it
    m_slots[target.slot].state = State::newest;
}

void FrameRing::drop(const Target& target) {
    const std::lock_guard lock(m_mutex);
    setFree(m_slots[target.slot]);
}

void FrameRing::deleteFramebuffers() {
    for (Slot& slot : m_slots)
        glDeleteFramebuffers(1, &slot.framebuffer);
}

GRef<GdkTexture> FrameRing::takeNewest() {
    const std::lock_guard lock(m_mutex);
    const auto newest = std::ranges::find(m_slots, State::newest, &Slot::state);
    if (newest == m_slots.end())
        return {};
    newest->state = State::shown;
    return GRef<GdkTexture>::adopt(gdk_gl_texture_new(m_reading.get(), newest->texture, newest->width,
                                                      newest->height, Hold::end,
                                                      new Hold{shared_from_this(), *newest}));
}

} // namespace kestrin::gtk

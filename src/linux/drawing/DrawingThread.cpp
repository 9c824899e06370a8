#include "linux/drawing/DrawingThread.h"

#include "linux/toolkit/RunTask.h"
#include "linux/toolkit/ThreadName.h"

#include <algorithm>
#include <utility>

namespace kestrin::gtk {

namespace {

constexpr GLuint64 kLongestFrame = 5'000'000'000; // nanoseconds; a GPU that needs longer hangs

} // namespace

DrawingThread::DrawingThread(std::shared_ptr<FrameRing> ring, std::weak_ptr<platform::View> view,
                             MainWake& published, std::shared_ptr<platform::LogSink> log)
    : m_ring(std::move(ring)), m_view(std::move(view)), m_published(published), m_log(std::move(log)) {
    m_thread = std::thread([this] { run(); });
}

DrawingThread::~DrawingThread() {
    change([this] { m_ends = true; });
    m_thread.join();
}

template <class Change>
void DrawingThread::change(Change change) {
    {
        const std::lock_guard lock(m_mutex);
        change();
    }
    m_changed.notify_one();
}

void DrawingThread::setDelegate(std::weak_ptr<platform::RenderViewDelegate> delegate) {
    change([&] { m_delegate = std::move(delegate); });
}

void DrawingThread::setFramesPerSecond(int rate) {
    const std::chrono::duration<double> period(1.0 / std::clamp(rate, 1, 1000));
    change([&] { m_period = std::chrono::duration_cast<Clock::duration>(period); });
}

void DrawingThread::setSize(const platform::Size& pixels) {
    change([&] { m_size = pixels; });
}

void DrawingThread::setShown(bool shown) {
    change([&] { m_isShown = shown; });
}

void DrawingThread::stop() {
    setShown(false);
    std::unique_lock lock(m_mutex);
    m_turnEnded.wait(lock, [this] { return !m_isInTurn; });
}

void DrawingThread::run() {
    nameThread("kestrin drawing");
    gdk_gl_context_make_current(m_ring->drawingContext());
    if (gdk_gl_context_get_current() != m_ring->drawingContext()) {
        complainOnce("its GL context cannot be used");
        return;
    }
    Turn turn;
    while (waitForTurn(turn)) {
        if (turn.view && turn.delegate)
            runTask([&] { draw(turn); }, *m_log);
        for (const Submitted& work : std::exchange(m_submitted, {}))
            finish(work);
        if (m_target)
            m_ring->drop(*std::exchange(m_target, std::nullopt)); // it was not presented
        endTurn(turn);
    }
    m_store->close();
    m_ring->deleteFramebuffers();
    gdk_gl_context_clear_current();
}

// On a fixed schedule while frames are in time; one that is late is followed by the next at once, so that a
// delegate that waits longer than a period sets the pace itself.
bool DrawingThread::waitForTurn(Turn& turn) {
    std::unique_lock lock(m_mutex);
    do {
        m_changed.wait(lock, [this] { return m_ends || isAwake(); });
    } while (!m_ends && m_changed.wait_until(lock, m_due, [this] { return m_ends || !isAwake(); }));
    if (m_ends)
        return false;
    m_due = std::max(m_due + m_period, Clock::now());
    turn = {m_view.lock(), m_delegate.lock(), m_size};
    m_isInTurn = true;
    return true;
}

void DrawingThread::endTurn(Turn& turn) {
    turn = {};
    {
        const std::lock_guard lock(m_mutex);
        m_isInTurn = false;
    }
    m_turnEnded.notify_one();
}

void DrawingThread::draw(const Turn& turn) {
    m_store->sweep();
    m_target = m_ring->begin(turn.size);
    if (!m_target)
        return; // the toolkit is behind; its pictures are still to be shown
    bindPass();
    if (glCheckFramebufferStatus(GL_FRAMEBUFFER) != GL_FRAMEBUFFER_COMPLETE) {
        complainOnce("there is no framebuffer of that size");
        return;
    }
    glClearColor(0, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    turn.delegate->drawInView(static_cast<platform::RenderView&>(*turn.view));
    if (const GLenum error = glGetError())
        complainOnce("GL error " + std::to_string(error));
}

void DrawingThread::bindPass() const {
    glBindFramebuffer(GL_FRAMEBUFFER, m_target->framebuffer);
    glViewport(0, 0, m_target->width, m_target->height);
}

void DrawingThread::submit(std::vector<platform::Task> completions, bool presents) {
    const GLsync fence = glFenceSync(GL_SYNC_GPU_COMMANDS_COMPLETE, 0);
    glFlush();
    m_submitted.push_back(
        {fence, std::move(completions), presents ? std::exchange(m_target, std::nullopt) : std::nullopt});
}

// Not inside the delegate's call, which would keep its own users waiting as long as the GPU draws.
void DrawingThread::finish(const Submitted& work) {
    const GLenum outcome = glClientWaitSync(work.fence, GL_SYNC_FLUSH_COMMANDS_BIT, kLongestFrame);
    glDeleteSync(work.fence);
    if (outcome == GL_WAIT_FAILED || outcome == GL_TIMEOUT_EXPIRED)
        complainOnce("the GPU does not finish a frame");
    for (const platform::Task& completion : work.completions)
        runTask(completion, *m_log);
    if (work.presented) {
        m_presented.count();
        m_ring->publish(*work.presented);
        m_published.wake();
    }
}

void DrawingThread::complainOnce(const std::string& text) {
    if (!std::exchange(m_hasComplained, true))
        m_log->write("Kestrin - Drawing fails: " + text);
}

} // namespace kestrin::gtk

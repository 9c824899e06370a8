#pragma once

#include "linux/drawing/FrameRing.h"
#include "linux/drawing/GlStore.h"
#include "linux/drawing/MainWake.h"
#include "linux/toolkit/RateMeter.h"
#include "platform/Gpu.h"

#include <chrono>
#include <condition_variable>
#include <thread>

namespace kestrin::gtk {

/// The thread of one render view: calls the view's delegate at the wanted rate while the view is shown and
/// has a size, otherwise sleeps. Made and destroyed on main; destruction waits for the thread, which is never
/// inside the delegate then, as it keeps the view alive while it is.
class DrawingThread {
  public:
    /// `published` is woken after each picture that the ring has anew.
    DrawingThread(std::shared_ptr<FrameRing> ring, std::weak_ptr<platform::View> view, MainWake& published,
                  std::shared_ptr<platform::LogSink> log);
    ~DrawingThread();
    DrawingThread(const DrawingThread&) = delete;
    DrawingThread& operator=(const DrawingThread&) = delete;

    // Thread: main.
    void setDelegate(std::weak_ptr<platform::RenderViewDelegate> delegate);
    void setFramesPerSecond(int rate);
    void setSize(const platform::Size& pixels);
    void setShown(bool shown);
    /// Hides it and waits until the frame that is being drawn is over: nothing of the delegate or the view is
    /// held here then.
    void stop();

    // Thread: drawing, inside the delegate's call.
    bool hasPass() const { return m_target.has_value(); }
    /// Makes what there is to draw into current.
    void bindPass() const;
    GlStore& store() const { return *m_store; }
    /// Hands what was drawn so far to the GPU and returns. Once the delegate's call is over and the GPU is
    /// done, the tasks run, and what was drawn becomes what is shown if `presents`: there is no pass any more
    /// then.
    void submit(std::vector<platform::Task> completions, bool presents);

  private:
    using Clock = std::chrono::steady_clock;
    struct Turn {
        std::shared_ptr<platform::View> view;
        std::shared_ptr<platform::RenderViewDelegate> delegate;
        platform::Size size;
    };

    void run();
    bool waitForTurn(Turn& turn);
    void endTurn(Turn& turn);
    bool isAwake() const { return m_isShown && m_size.width > 0 && m_size.height > 0; }
    void draw(const Turn& turn);
    struct Submitted {
        GLsync fence;
        std::vector<platform::Task> completions;
        std::optional<FrameRing::Target> presented;
    };
    void finish(const Submitted& work);
    void complainOnce(const std::string& text);
    template <class Change>
    void change(Change change);

    const std::shared_ptr<FrameRing> m_ring;
    const std::weak_ptr<platform::View> m_view;
    MainWake& m_published;
    const std::shared_ptr<platform::LogSink> m_log;

    std::mutex m_mutex;
    std::condition_variable m_changed, m_turnEnded;
    std::weak_ptr<platform::RenderViewDelegate> m_delegate;     // guarded
    Clock::duration m_period{};                                 // guarded
    platform::Size m_size;                                      // guarded
    bool m_isShown = false, m_ends = false, m_isInTurn = false; // guarded

    // The thread's own.
    const std::shared_ptr<GlStore> m_store = std::make_shared<GlStore>();
    std::optional<FrameRing::Target> m_target;
    std::vector<Submitted> m_submitted;
    Clock::time_point m_due{};
    bool m_hasComplained = false;
    RateMeter m_presented{"pictures drawn"};

    std::thread m_thread;
};

} // namespace kestrin::gtk

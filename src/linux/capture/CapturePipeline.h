#pragma once

#include "linux/capture/GstParts.h"
#include "linux/toolkit/RateMeter.h"
#include "platform/Capture.h"
#include "platform/Log.h"

#include <gst/app/gstappsink.h>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

namespace kestrin::gtk {

/// Where the pictures come from.
struct PictureSource {
    std::string name;                                 ///< for the log
    GRef<GstElement> element;                         ///< not yet in a pipeline
    bool isLive = true;                               ///< else it is played at its own pace, again and again
    bool isMirrored = false;                          ///< left and right change places
    std::function<std::shared_ptr<void>()> hold = {}; ///< what it gives is kept while the source is open
    std::function<void()> whenLost = {};              ///< called at a failure. Thread: control
    GstCapsPtr mode = {};                             ///< what is asked of it; null leaves that to it
};

/// From a source to NV12 pictures of full range on a queue. The source is opened with the first start.
/// Thread: control (the queue it was made with), unless said otherwise.
class CapturePipeline : public std::enable_shared_from_this<CapturePipeline> {
  public:
    /// Its end, on whatever thread, happens on `control`. Thread: any.
    static std::shared_ptr<CapturePipeline> make(PictureSource source, platform::CaptureOutput output,
                                                 std::shared_ptr<platform::SerialQueue> control,
                                                 std::shared_ptr<platform::LogSink> log);
    ~CapturePipeline();
    CapturePipeline(const CapturePipeline&) = delete;
    CapturePipeline& operator=(const CapturePipeline&) = delete;

    /// Thread: any. The camera follows later.
    void startRunning();
    void stopRunning();

  private:
    CapturePipeline(PictureSource source, platform::CaptureOutput output,
                    std::shared_ptr<platform::SerialQueue> control, std::shared_ptr<platform::LogSink> log);

    bool build();
    std::string chain() const;
    void listen();
    void onMessage(GstMessage* message);
    void onEnd();
    void onFailure(const std::string& reason);
    void onSample(GstSample* sample);
    void deliver(const platform::PixelBufferRef& picture, double time, unsigned run);
    double presentationTime(GstSample* sample) const;
    /// Runs `step` on the control queue if the pipeline still lives then. Thread: any.
    void later(void (CapturePipeline::*step)());
    void play();
    void rest();
    void watch();
    void unwatch();

    const PictureSource m_source;
    const platform::CaptureOutput m_output;
    const std::shared_ptr<platform::SerialQueue> m_control;
    const std::shared_ptr<platform::LogSink> m_log;
    const std::shared_ptr<std::atomic<int>> m_held = std::make_shared<std::atomic<int>>(0); ///< pictures out
    std::shared_ptr<void> m_hold;
    GRef<GstElement> m_pipeline, m_sink;
    GstClockID m_watch = nullptr; ///< fires again and again while a live source runs

    RateMeter m_samples{"camera pictures"}; ///< of the thread that brings them
    std::mutex m_mutex;                     ///< guards the next
    unsigned m_run = 0;                     ///< odd while running

    std::atomic<bool> m_isBusy = false;     ///< the delegate has a picture to take
    std::atomic<int> m_silence = 0;         ///< seconds without a picture
    std::atomic<bool> m_hasPicture = false; ///< since the source began
};

} // namespace kestrin::gtk

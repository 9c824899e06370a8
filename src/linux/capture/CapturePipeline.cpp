#include "linux/capture/CapturePipeline.h"

#include "linux/capture/GstPicture.h"
#include "linux/toolkit/DebugTopics.h"

#include <utility>

namespace kestrin::gtk {

namespace {

constexpr int kPictures = 8;       ///< that may be out at a time; those beyond are dropped
constexpr int kLongestSilence = 5; ///< seconds

using Weak = std::weak_ptr<CapturePipeline>;

void forget(gpointer weak) { delete static_cast<Weak*>(weak); }

/// Joins the first pictures that the decoder finds.
void onPad(GstElement*, GstPad* pad, gpointer conversion) {
    const GstCapsPtr caps(gst_pad_get_current_caps(pad));
    const bool isVideo =
        caps && !gst_caps_is_empty(caps.get()) &&
        g_str_has_prefix(gst_structure_get_name(gst_caps_get_structure(caps.get(), 0)), "video/");
    const auto sink = GRef<GstPad>::adopt(gst_element_get_static_pad(GST_ELEMENT(conversion), "sink"));
    if (isVideo && !gst_pad_is_linked(sink.get()))
        gst_pad_link(pad, sink.get());
}

/// Leaves the colours of YCbCr to the end, where they are converted exactly; others become what is wanted.
GstPadProbeReturn onFormat(GstPad*, GstPadProbeInfo* info, gpointer filter) {
    GstEvent* event = gst_pad_probe_info_get_event(info);
    if (GST_EVENT_TYPE(event) != GST_EVENT_CAPS)
        return GST_PAD_PROBE_OK;
    GstCaps* caps = nullptr;
    gst_event_parse_caps(event, &caps);
    GstVideoInfo video;
    const bool isYuv = gst_video_info_from_caps(&video, caps) && GST_VIDEO_INFO_IS_YUV(&video);
    const GText colours(isYuv ? gst_video_colorimetry_to_string(&video.colorimetry) : nullptr);
    const GstCapsPtr wanted(gst_caps_new_simple("video/x-raw", "format", G_TYPE_STRING, "NV12", "colorimetry",
                                                G_TYPE_STRING, colours ? colours.get() : "1:4:7:1", nullptr));
    g_object_set(filter, "caps", wanted.get(), nullptr);
    return GST_PAD_PROBE_OK;
}

void traceFormat(const std::string& name, GstSample* sample) {
    const GText caps(gst_caps_to_string(gst_sample_get_caps(sample)));
    debugLine(Topic::camera, name + ": the first picture is " + caps.get());
}

/// What elements say of themselves, in short. Their many states are left out but for those of the whole.
void traceMessage(const std::string& name, GstMessage* message) {
    const auto type = GST_MESSAGE_TYPE(message);
    if (type == GST_MESSAGE_TAG || type == GST_MESSAGE_STREAM_STATUS || type == GST_MESSAGE_QOS ||
        (type == GST_MESSAGE_STATE_CHANGED && !GST_IS_PIPELINE(GST_MESSAGE_SRC(message))))
        return;
    const GstStructure* const details = gst_message_get_structure(message);
    const GText text(details ? gst_structure_to_string(details) : nullptr);
    debugLine(Topic::camera, name + ": " + GST_MESSAGE_SRC_NAME(message) + ": " +
                                 (text ? text.get() : GST_MESSAGE_TYPE_NAME(message)));
}

GRef<GstElement> makeElement(const char* factory) {
    return GRef<GstElement>::refSink(gst_element_factory_make(factory, nullptr));
}

} // namespace

std::shared_ptr<CapturePipeline> CapturePipeline::make(PictureSource source, platform::CaptureOutput output,
                                                       std::shared_ptr<platform::SerialQueue> control,
                                                       std::shared_ptr<platform::LogSink> log) {
    const auto end = [control](CapturePipeline* pipeline) {
        control->async([pipeline] { delete pipeline; });
    };
    return {new CapturePipeline(std::move(source), std::move(output), control, std::move(log)), end};
}

CapturePipeline::CapturePipeline(PictureSource source, platform::CaptureOutput output,
                                 std::shared_ptr<platform::SerialQueue> control,
                                 std::shared_ptr<platform::LogSink> log)
    : m_source(std::move(source)), m_output(std::move(output)), m_control(std::move(control)),
      m_log(std::move(log)) {}

CapturePipeline::~CapturePipeline() {
    unwatch();
    if (m_pipeline)
        gst_element_set_state(m_pipeline.get(), GST_STATE_NULL);
}

std::string CapturePipeline::chain() const {
    const std::string width = std::to_string(m_output.width), height = std::to_string(m_output.height);
    std::string text = "videoconvert name=convert ! capsfilter name=colours";
    if (m_output.exactSize)
        text += " ! aspectratiocrop aspect-ratio=" + width + "/" + height +
                " ! videoscale ! video/x-raw,pixel-aspect-ratio=1/1,width=" + width + ",height=" + height;
    if (m_source.isMirrored)
        text += " ! videoflip video-direction=horiz";
    return text + " ! appsink name=pictures max-buffers=1 drop=true";
}

bool CapturePipeline::build() {
    if (isDebugged(Topic::camera))
        debugLine(Topic::camera, m_source.name + ": " + chain());
    const auto filter = makeElement("capsfilter"), decoder = makeElement("decodebin");
    const auto conversion =
        GRef<GstElement>::refSink(gst_parse_bin_from_description(chain().c_str(), TRUE, nullptr));
    if (!decoder || !conversion || !filter)
        return false;
    m_pipeline = GRef<GstElement>::refSink(gst_pipeline_new("camera"));
    m_sink = GRef<GstElement>::adopt(gst_bin_get_by_name(GST_BIN(conversion.get()), "pictures"));
    g_object_set(m_sink.get(), "sync", gboolean(!m_source.isLive), nullptr);
    g_object_set(decoder.get(), "force-sw-decoders", TRUE, nullptr);
    if (m_source.mode)
        g_object_set(filter.get(), "caps", m_source.mode.get(), nullptr);
    gst_bin_add_many(GST_BIN(m_pipeline.get()), m_source.element.get(), filter.get(), decoder.get(),
                     conversion.get(), nullptr);
    g_signal_connect(decoder.get(), "pad-added", G_CALLBACK(onPad), conversion.get());
    const auto convert = GRef<GstElement>::adopt(gst_bin_get_by_name(GST_BIN(conversion.get()), "convert"));
    const auto colours = GRef<GstElement>::adopt(gst_bin_get_by_name(GST_BIN(conversion.get()), "colours"));
    const auto pad = GRef<GstPad>::adopt(gst_element_get_static_pad(convert.get(), "sink"));
    gst_pad_add_probe(pad.get(), GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM, onFormat, colours.get(), nullptr);
    listen();
    return gst_element_link_many(m_source.element.get(), filter.get(), decoder.get(), nullptr);
}

void CapturePipeline::listen() {
    const auto bus = GRef<GstBus>::adopt(gst_pipeline_get_bus(GST_PIPELINE(m_pipeline.get())));
    const auto hear = [](GstBus*, GstMessage* message, gpointer weak) {
        if (const auto self = static_cast<Weak*>(weak)->lock())
            self->onMessage(message);
        gst_message_unref(message);
        return GST_BUS_DROP;
    };
    gst_bus_set_sync_handler(bus.get(), hear, new Weak(weak_from_this()), forget);
    GstAppSinkCallbacks callbacks{};
    callbacks.new_sample = [](GstAppSink* sink, gpointer weak) {
        const GstSamplePtr sample(gst_app_sink_pull_sample(sink));
        if (const auto self = static_cast<Weak*>(weak)->lock(); self && sample)
            self->onSample(sample.get());
        return GST_FLOW_OK;
    };
    gst_app_sink_set_callbacks(GST_APP_SINK(m_sink.get()), &callbacks, new Weak(weak_from_this()), forget);
}

void CapturePipeline::startRunning() {
    {
        const std::lock_guard lock(m_mutex);
        m_run |= 1;
    }
    later(&CapturePipeline::play);
}

void CapturePipeline::stopRunning() {
    {
        const std::lock_guard lock(m_mutex);
        m_run += m_run & 1;
    }
    later(&CapturePipeline::rest);
}

void CapturePipeline::later(void (CapturePipeline::*step)()) {
    m_control->async([weak = weak_from_this(), step] {
        if (const auto self = weak.lock())
            (self.get()->*step)();
    });
}

void CapturePipeline::play() {
    if (!m_pipeline && !build())
        return onFailure("GStreamer lacks an element for it");
    m_hold = m_source.hold();
    gst_element_set_state(m_pipeline.get(), GST_STATE_PLAYING);
    unwatch();
    if (m_source.isLive)
        watch();
}

void CapturePipeline::rest() {
    unwatch();
    if (m_pipeline &&
        GST_STATE(m_pipeline.get()) != GST_STATE_NULL) // a camera that has gone is not opened again to rest
        gst_element_set_state(m_pipeline.get(), m_source.isLive ? GST_STATE_READY : GST_STATE_PAUSED);
}

// Some sources fall silent when their camera goes away, and report nothing.
void CapturePipeline::watch() {
    m_silence = 0;
    const auto clock = GRef<GstClock>::adopt(gst_system_clock_obtain());
    m_watch =
        gst_clock_new_periodic_id(clock.get(), gst_clock_get_time(clock.get()) + GST_SECOND, GST_SECOND);
    const auto tick = [](GstClock*, GstClockTime, GstClockID, gpointer weak) -> gboolean {
        const auto self = static_cast<Weak*>(weak)->lock();
        if (self && ++self->m_silence == kLongestSilence)
            self->later(&CapturePipeline::onEnd);
        return TRUE;
    };
    gst_clock_id_wait_async(m_watch, tick, new Weak(weak_from_this()), forget);
}

void CapturePipeline::unwatch() {
    if (!m_watch)
        return;
    gst_clock_id_unschedule(m_watch);
    gst_clock_id_unref(std::exchange(m_watch, nullptr));
}

void CapturePipeline::onMessage(GstMessage* message) {
    if (isDebugged(Topic::camera))
        traceMessage(m_source.name, message);
    if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_EOS)
        later(&CapturePipeline::onEnd);
    if (GST_MESSAGE_TYPE(message) != GST_MESSAGE_ERROR)
        return;
    m_control->async([weak = weak_from_this(), reason = errorText(message)] {
        if (const auto self = weak.lock())
            self->onFailure(reason);
    });
}

void CapturePipeline::onEnd() {
    if (m_source.isLive)
        onFailure("it gives no more pictures");
    else if (!m_hasPicture.exchange(false))
        onFailure("it holds no pictures");
    else if (!gst_element_seek_simple(m_pipeline.get(), GST_FORMAT_TIME, GST_SEEK_FLAG_FLUSH, 0))
        onFailure("it cannot be played again");
}

void CapturePipeline::onFailure(const std::string& reason) {
    {
        const std::lock_guard lock(m_mutex);
        if ((m_run & 1) == 0)
            return; // what follows a failure is told already
        ++m_run;
    }
    m_source.whenLost();
    m_log->write("Kestrin - Camera - " + m_source.name + " has stopped: " + reason);
    unwatch();
    if (m_pipeline)
        gst_element_set_state(m_pipeline.get(), GST_STATE_NULL);
    m_hold.reset();
}

void CapturePipeline::onSample(GstSample* sample) {
    m_samples.count();
    if (!m_hasPicture && isDebugged(Topic::camera))
        traceFormat(m_source.name, sample);
    m_hasPicture = true;
    m_silence = 0;
    std::unique_lock lock(m_mutex);
    const bool isLate = m_output.alwaysDiscardsLateFrames && m_isBusy;
    if ((m_run & 1) == 0 || isLate || *m_held >= kPictures)
        return;
    auto mapped = GstPicture::map(sample);
    if (!mapped)
        return;
    ++*m_held;
    const platform::PixelBuffer* picture = mapped.get();
    platform::PixelBufferRef reference(picture, [mapped, held = m_held](const auto*) mutable {
        mapped.reset();
        --*held;
    });
    mapped.reset();
    m_isBusy = true;
    m_output.queue->async([self = shared_from_this(), reference = std::move(reference),
                           time = presentationTime(sample),
                           run = m_run] { self->deliver(reference, time, run); });
}

void CapturePipeline::deliver(const platform::PixelBufferRef& picture, double time, unsigned run) {
    std::shared_ptr<platform::CaptureSampleDelegate> delegate;
    {
        const std::lock_guard lock(m_mutex);
        if (run == m_run)
            delegate = m_output.delegate.lock();
    }
    if (delegate)
        delegate->captureOutput(picture, time);
    m_isBusy = false;
}

// The clock's time, which goes on through stops and from the end of a file to its beginning.
double CapturePipeline::presentationTime(GstSample* sample) const {
    const GstClockTime running = gst_segment_to_running_time(gst_sample_get_segment(sample), GST_FORMAT_TIME,
                                                             GST_BUFFER_PTS(gst_sample_get_buffer(sample)));
    const GstClockTime base = gst_element_get_base_time(m_pipeline.get());
    return double(base + (GST_CLOCK_TIME_IS_VALID(running) ? running : 0)) / GST_SECOND;
}

} // namespace kestrin::gtk

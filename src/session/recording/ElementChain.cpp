#include "session/recording/ElementChain.h"

#include <utility>

namespace kestrin::session {

namespace {

bool isGstreamerReady() {
    static const bool isReady = gst_init_check(nullptr, nullptr, nullptr) != FALSE;
    return isReady;
}

/// Joins the pads of elements that are in no bin.
bool join(GstPad* source, GstPad* sink) {
    return gst_pad_link_full(source, sink, GST_PAD_LINK_CHECK_NOTHING) == GST_PAD_LINK_OK;
}

/// A pad that is always there or one that the element makes on request.
GstPad* sinkOf(GstElement* element) {
    if (GstPad* pad = gst_element_get_static_pad(element, "sink"))
        return pad;
    return gst_element_request_pad_simple(element, "video_%u");
}

} // namespace

ElementChain::ElementChain(Output output)
    : m_output(std::move(output)), m_front(gst_pad_new("front", GST_PAD_SRC)),
      m_back(gst_pad_new("back", GST_PAD_SINK)) {
    gst_object_ref_sink(m_front);
    gst_object_ref_sink(m_back);
    gst_pad_set_element_private(m_back, this);
    gst_pad_set_chain_function(m_back, chain);
    gst_pad_set_event_function(m_back, event);
}

void ElementChain::load(std::initializer_list<const char*> elements) {
    if (isGstreamerReady())
        for (const char* element : elements)
            if (GstElement* made = gst_element_factory_make(element, nullptr))
                gst_object_unref(gst_object_ref_sink(made));
}

std::unique_ptr<ElementChain> ElementChain::make(std::initializer_list<Element> elements,
                                                 const std::string& input, Output output,
                                                 std::string& missing) {
    if (!isGstreamerReady()) {
        missing = "GStreamer";
        return {};
    }
    std::unique_ptr<ElementChain> chain(new ElementChain(std::move(output)));
    for (const Element& element : elements)
        if (!chain->add(element)) {
            missing = "the GStreamer element " + std::string(element.name);
            return {};
        }
    if (!chain->open(input)) {
        missing = "a GStreamer element for such pictures";
        return {};
    }
    return chain;
}

ElementChain::~ElementChain() {
    for (GstElement* element : m_elements)
        gst_element_set_state(element, GST_STATE_NULL);
    gst_pad_set_active(m_front, FALSE);
    gst_pad_set_active(m_back, FALSE);
    for (GstElement* element : m_elements)
        gst_object_unref(element);
    gst_object_unref(m_front);
    gst_object_unref(m_back);
}

bool ElementChain::add(const Element& element) {
    GstElement* made = gst_element_factory_make(element.name, nullptr);
    if (!made)
        return false;
    gst_object_ref_sink(made);
    for (const auto& [name, value] : element.settings)
        gst_util_set_object_arg(G_OBJECT(made), name, value);
    GstPad* source = m_elements.empty() ? GST_PAD(gst_object_ref(m_front))
                                        : gst_element_get_static_pad(m_elements.back(), "src");
    GstPad* sink = sinkOf(made);
    const bool isJoined = join(source, sink);
    gst_object_unref(source);
    gst_object_unref(sink);
    m_elements.push_back(made);
    return isJoined;
}

bool ElementChain::open(const std::string& input) {
    GstPad* last = gst_element_get_static_pad(m_elements.back(), "src");
    const bool isJoined = join(last, m_back);
    gst_object_unref(last);
    if (!isJoined)
        return false;
    gst_pad_set_active(m_back, TRUE);
    for (auto element = m_elements.rbegin(); element != m_elements.rend(); ++element)
        if (gst_element_set_state(*element, GST_STATE_PLAYING) == GST_STATE_CHANGE_FAILURE)
            return false;
    gst_pad_set_active(m_front, TRUE);
    GstCaps* caps = gst_caps_from_string(input.c_str());
    GstSegment segment;
    gst_segment_init(&segment, GST_FORMAT_TIME);
    const bool isOpen = gst_pad_push_event(m_front, gst_event_new_stream_start("video")) != FALSE &&
                        gst_pad_push_event(m_front, gst_event_new_caps(caps)) != FALSE &&
                        gst_pad_push_event(m_front, gst_event_new_segment(&segment)) != FALSE;
    gst_caps_unref(caps);
    return isOpen;
}

bool ElementChain::push(GstBuffer* buffer) { return gst_pad_push(m_front, buffer) == GST_FLOW_OK; }

void ElementChain::end() { gst_pad_push_event(m_front, gst_event_new_eos()); }

GstFlowReturn ElementChain::chain(GstPad* pad, GstObject*, GstBuffer* buffer) {
    const auto* self = static_cast<ElementChain*>(gst_pad_get_element_private(pad));
    const bool isUsed = self->m_output.buffer(buffer);
    gst_buffer_unref(buffer);
    return isUsed ? GST_FLOW_OK : GST_FLOW_ERROR;
}

gboolean ElementChain::event(GstPad* pad, GstObject*, GstEvent* event) {
    const auto* self = static_cast<ElementChain*>(gst_pad_get_element_private(pad));
    if (GST_EVENT_TYPE(event) == GST_EVENT_CAPS && self->m_output.format) {
        GstCaps* caps = nullptr;
        gst_event_parse_caps(event, &caps);
        self->m_output.format(caps);
    }
    gst_event_unref(event);
    return TRUE;
}

} // namespace kestrin::session

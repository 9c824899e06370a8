#pragma once

#include "linux/toolkit/GRef.h"

#include <gst/gst.h>

#include <string>

namespace kestrin::gtk {

// The library's own functions are local to each file, which types that are shared cannot name.
inline void releaseCaps(GstCaps* caps) { gst_caps_unref(caps); }
inline void releaseBuffer(GstBuffer* buffer) { gst_buffer_unref(buffer); }
inline void releaseSample(GstSample* sample) { gst_sample_unref(sample); }

using GstCapsPtr = GOwned<GstCaps, releaseCaps>;
using GstBufferPtr = GOwned<GstBuffer, releaseBuffer>;
using GstSamplePtr = GOwned<GstSample, releaseSample>;

/// Initialises GStreamer once; false when that fails. Thread: any.
inline bool gstreamerIsReady() {
    static const bool isReady = gst_init_check(nullptr, nullptr, nullptr) != FALSE;
    return isReady;
}

/// What an error message says.
inline std::string errorText(GstMessage* message) {
    GFailure failure;
    gst_message_parse_error(message, failure.out(), nullptr);
    return failure.text();
}

} // namespace kestrin::gtk

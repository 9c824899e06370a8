#pragma once

#include "session/Nv12Buffer.h"

#include <gst/video/video.h>

namespace kestrin::session {

// The pictures of a video have the colours of two rows apart, and an even width.

/// How the video's pictures lie in memory.
GstVideoInfo videoFormat(int width, int height);
/// A new buffer with the picture, of a format made by videoFormat.
GstBuffer* toVideo(const Nv12Buffer& picture, const GstVideoInfo& format);
/// False when the buffer is not of that format or smaller than the picture.
bool fromVideo(GstBuffer* buffer, const GstVideoInfo& format, Nv12Buffer& picture);

} // namespace kestrin::session

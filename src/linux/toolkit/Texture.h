#pragma once

#include "linux/toolkit/GRef.h"
#include "platform/Image.h"

#include <gdk/gdk.h>

namespace kestrin::gtk {

/// The picture for GTK, sharing its pixels; empty for an absent one. Thread: any.
GRef<GdkTexture> makeTexture(const platform::Image& image);
/// Reads the pixels back. Thread: main for a texture that lives on the GPU.
platform::Image readTexture(GdkTexture* texture);

} // namespace kestrin::gtk

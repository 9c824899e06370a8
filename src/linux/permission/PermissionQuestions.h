#pragma once

#include "linux/toolkit/Question.h"

namespace kestrin::gtk {

/// Whether the application may use the camera. Names it as `g_set_application_name` did. Thread: main, as for
/// the next.
Question cameraQuestion();
/// Whether it may add to the person's photos.
Question photosQuestion();

} // namespace kestrin::gtk

#pragma once

#include "linux/toolkit/GRef.h"
#include "platform/Image.h"

#include <gio/gio.h>

#include <optional>
#include <string>

namespace kestrin::gtk {

/// Writes the picture as JPEG in the place of `file`; none, or why that failed, and then a former file is
/// still there. Thread: worker, as for the next.
std::optional<std::string> writePicture(const platform::Image& image, GFile* file);
/// Writes it into a folder of its own among the temporary files, which the system clears; empty when that
/// fails.
GRef<GFile> writeTemporaryPicture(const platform::Image& image, const char* name);

} // namespace kestrin::gtk

// What libraries allocate while they are loaded is not looked at for leaks: GLib drops its first table of
// quarks on purpose when it grows, which GStreamer's many names make it do.

#include <sanitizer/lsan_interface.h>

namespace {

/// Runs before the libraries' own constructors, and the other one after them.
[[gnu::section(".preinit_array"), gnu::used]] void (*const before)() = __lsan_disable;
[[gnu::constructor]] void after() { __lsan_enable(); }

} // namespace

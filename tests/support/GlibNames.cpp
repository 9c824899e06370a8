// GLib moves its table of names when GStreamer fills it, and leaves the old one, which was made when the
// library was loaded, to whoever may still be reading it. The leak checker is told so; it needs whole stacks
// for it.
extern "C" const char* __asan_default_options() { return "fast_unwind_on_malloc=0"; }
extern "C" const char* __lsan_default_suppressions() { return "leak:_dl_init\n"; }

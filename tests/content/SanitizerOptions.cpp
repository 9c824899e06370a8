#ifdef __SANITIZE_THREAD__

// GLib, GnuTLS and libsoup are not instrumented: what they lock is not seen, and all they touch would seem to
// race.
extern "C" const char* __tsan_default_options() { return "ignore_noninstrumented_modules=1"; }

#endif

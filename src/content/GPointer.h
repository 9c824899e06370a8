#pragma once

#include <gio/gio.h>

#include <memory>
#include <utility>

namespace kestrin::content {

/// Calls a library's own function for giving something back.
template <auto release>
struct Releaser {
    template <class T>
    void operator()(T* object) const {
        release(object);
    }
};

/// Owns one thing of GLib or GnuTLS that is not a GObject.
template <class T, auto release>
using GHandle = std::unique_ptr<T, Releaser<release>>;

using GText = GHandle<char, g_free>;

/// Owns one reference to a GObject.
template <class T>
class GPointer {
  public:
    GPointer() = default;
    /// Takes over the caller's reference; a null pointer gives an empty one.
    static GPointer adopt(T* object) { return GPointer(object); }
    /// Adds a reference of its own.
    static GPointer share(T* object) { return GPointer(static_cast<T*>(g_object_ref(object))); }

    T* get() const { return m_object.get(); }
    explicit operator bool() const { return m_object != nullptr; }
    void reset() { m_object.reset(); }

  private:
    explicit GPointer(T* object) : m_object(object) {}

    GHandle<T, g_object_unref> m_object;
};

/// Receives the error of one GLib call.
class GFailure {
  public:
    GFailure() = default;
    ~GFailure() { g_clear_error(&m_error); }
    GFailure(const GFailure&) = delete;
    GFailure& operator=(const GFailure&) = delete;

    GError** out() { return &m_error; }
    bool is(GIOErrorEnum code) const { return g_error_matches(m_error, G_IO_ERROR, code); }
    const char* text() const { return m_error ? m_error->message : "unknown error"; }

  private:
    GError* m_error = nullptr;
};

} // namespace kestrin::content

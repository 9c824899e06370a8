#pragma once

#include <glib-object.h>

#include <memory>
#include <utility>

namespace kestrin::gtk {

/// Owns one reference to a GObject; empty when it holds null. The one way in which Kestrin keeps GObjects.
template <class T>
class GRef {
  public:
    GRef() = default;
    /// Takes over the reference that the caller owns (what `_new` functions of plain GObjects return).
    static GRef adopt(T* object) { return GRef(object); }
    /// Takes over a floating reference, or adds one (what `_new` functions of widgets return).
    static GRef refSink(T* object) {
        return GRef(object ? static_cast<T*>(g_object_ref_sink(object)) : nullptr);
    }
    /// Adds a reference to an object that somebody else owns.
    static GRef ref(T* object) { return GRef(object ? static_cast<T*>(g_object_ref(object)) : nullptr); }

    GRef(const GRef& other) : GRef(ref(other.m_object)) {}
    GRef(GRef&& other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}
    GRef& operator=(GRef other) noexcept {
        std::swap(m_object, other.m_object);
        return *this;
    }
    ~GRef() {
        if (m_object)
            g_object_unref(m_object);
    }

    T* get() const { return m_object; }
    explicit operator bool() const { return m_object != nullptr; }
    bool operator==(const GRef&) const = default;
    /// Hands the reference to a function that takes it over.
    T* release() { return std::exchange(m_object, nullptr); }
    void reset() { *this = GRef(); }

  private:
    explicit GRef(T* object) : m_object(object) {}

    T* m_object = nullptr;
};

/// Calls a library's own function for giving something back.
template <auto release>
struct Releaser {
    template <class T>
    void operator()(T* thing) const {
        release(thing);
    }
};

/// Owns one thing of GLib or GTK that is not a GObject.
template <class T, auto release>
using GOwned = std::unique_ptr<T, Releaser<release>>;

using GText = GOwned<char, g_free>;
using GData = GOwned<GBytes, g_bytes_unref>;

/// Receives the error of one GLib call.
class GFailure {
  public:
    GFailure() = default;
    ~GFailure() { g_clear_error(&m_error); }
    GFailure(const GFailure&) = delete;
    GFailure& operator=(const GFailure&) = delete;

    GError** out() { return &m_error; }
    const GError* error() const { return m_error; }
    const char* text() const { return m_error ? m_error->message : "unknown error"; }

  private:
    GError* m_error = nullptr;
};

} // namespace kestrin::gtk

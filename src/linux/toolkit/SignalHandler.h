#pragma once

#include "linux/toolkit/GRef.h"

namespace kestrin::gtk {

/// A connected signal handler. Disconnects when it is destroyed; the emitter may die first. Thread: main.
class SignalHandler {
  public:
    SignalHandler() = default;
    SignalHandler(gpointer emitter, const char* signal, GCallback callback, gpointer data)
        : m_emitter(static_cast<GObject*>(emitter)),
          m_id(g_signal_connect_data(emitter, signal, callback, data, nullptr, GConnectFlags(0))) {
        g_object_add_weak_pointer(m_emitter, weakSlot());
    }
    SignalHandler(SignalHandler&& other) noexcept { take(other); }
    SignalHandler& operator=(SignalHandler&& other) noexcept {
        disconnect();
        take(other);
        return *this;
    }
    ~SignalHandler() { disconnect(); }

    void disconnect() {
        if (!m_emitter)
            return;
        g_object_remove_weak_pointer(m_emitter, weakSlot());
        g_signal_handler_disconnect(std::exchange(m_emitter, nullptr), m_id);
    }

  private:
    gpointer* weakSlot() { return reinterpret_cast<gpointer*>(&m_emitter); }
    void take(SignalHandler& other) {
        if (!other.m_emitter)
            return;
        g_object_remove_weak_pointer(other.m_emitter, other.weakSlot());
        m_emitter = std::exchange(other.m_emitter, nullptr);
        m_id = other.m_id;
        g_object_add_weak_pointer(m_emitter, weakSlot());
    }

    GObject* m_emitter = nullptr;
    gulong m_id = 0;
};

} // namespace kestrin::gtk

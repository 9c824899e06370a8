#pragma once

#include "linux/toolkit/GRef.h"

namespace kestrin::gtk {

/// Refers to a GObject without keeping it alive. Thread: any.
template <class T>
class GWeak {
  public:
    GWeak() { g_weak_ref_init(&m_slot, nullptr); }
    ~GWeak() { g_weak_ref_clear(&m_slot); }
    GWeak(const GWeak&) = delete;
    GWeak& operator=(const GWeak&) = delete;

    void set(T* object) { g_weak_ref_set(&m_slot, object); }
    /// Empty when the object is gone.
    GRef<T> lock() const { return GRef<T>::adopt(static_cast<T*>(g_weak_ref_get(&m_slot))); }

  private:
    mutable GWeakRef m_slot;
};

} // namespace kestrin::gtk

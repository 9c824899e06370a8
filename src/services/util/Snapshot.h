#pragma once

#include <memory>
#include <mutex>
#include <utility>

namespace kestrin {

/// A value that readers take whole while writers replace it. Thread: any.
template <class T>
class Snapshot {
  public:
    explicit Snapshot(T value = T()) : m_value(std::make_shared<const T>(std::move(value))) {}

    /// The present value; it does not change while it is held.
    std::shared_ptr<const T> read() const {
        const std::lock_guard lock(m_mutex);
        return m_value;
    }
    void write(T value) { exchange(std::make_shared<const T>(std::move(value))); }

    /// Applies `change` to a copy and puts it in place; writers wait for each other, readers for the swap
    /// only.
    template <class Change>
    void update(Change change) {
        const std::lock_guard writing(m_writing);
        T copy = *read();
        change(copy);
        exchange(std::make_shared<const T>(std::move(copy)));
    }

  private:
    void exchange(std::shared_ptr<const T> next) {
        {
            const std::lock_guard lock(m_mutex);
            m_value.swap(next);
        }
        // The former value goes here, outside the lock.
    }

    std::mutex m_writing;
    mutable std::mutex m_mutex;
    std::shared_ptr<const T> m_value;
};

} // namespace kestrin

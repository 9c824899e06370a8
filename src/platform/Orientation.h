#pragma once

#include <atomic>

namespace kestrin::platform {

/// The interface orientation: 0 unknown, 1 portrait, 2 portrait upside down, 3 landscape right, 4 landscape
/// left. Thread: any.
class InterfaceOrientation {
  public:
    explicit InterfaceOrientation(int code = 0) : m_code(code) {}

    /// The newest code, or the one that this thread has pinned.
    int current() const;
    void set(int code) { m_code = code; }

    /// While it lives, its thread sees one orientation, so that all that is said of one frame agrees.
    class Pin {
      public:
        explicit Pin(int code);
        ~Pin();
        Pin(const Pin&) = delete;
        Pin& operator=(const Pin&) = delete;

      private:
        int m_previous;
    };

  private:
    std::atomic<int> m_code;
};

} // namespace kestrin::platform

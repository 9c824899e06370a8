#pragma once

#include <functional>

namespace kestrin {

/// Asks the person for access.
class KestrinPermission {
  public:
    using Callback = std::function<void()>;

    /// Calls one of the two: at once on the calling thread when the answer is known, else on main when it
    /// comes. Thread: main.
    static void askCameraAccess(Callback granted, Callback denied);
    /// An alert that says how to grant it. Thread: any.
    static void denyCameraMessage();

    KestrinPermission() = delete;
};

} // namespace kestrin

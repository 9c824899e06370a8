#pragma once

#include <functional>

namespace kestrin {

/// Asks the person for access. Each question calls one of the two: at once on the calling thread when the
/// answer is known, else on main when it comes. Thread: main.
class KestrinPermission {
  public:
    using Callback = std::function<void()>;

    static void askCameraAccess(Callback granted, Callback denied);
    /// Only access to all of the photo library is access.
    static void askPhotoAccess(Callback granted, Callback denied);
    /// The camera first; refused, the photo library is not asked for.
    static void askAccess(Callback granted, Callback denied);

    /// An alert that says how to grant it. Thread: any, as for the next.
    static void denyPhotoMessage();
    static void denyCameraMessage();

    KestrinPermission() = delete;
};

} // namespace kestrin

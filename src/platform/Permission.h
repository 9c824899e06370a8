#pragma once

#include <functional>

namespace kestrin::platform {

enum class Authorization { notDetermined, restricted, denied, limited, authorized };

/// What the person in front of the device allows.
class Permissions {
  public:
    using Answer = std::function<void(bool granted)>;

    virtual ~Permissions() = default;
    /// Thread: any.
    virtual Authorization camera() const = 0;
    /// Asks the person; the answer may come on any thread, and may never come. Thread: main.
    virtual void requestCamera(Answer answer) = 0;
    /// The same for the photo library; granted is all of it.
    virtual Authorization photos() const = 0;
    virtual void requestPhotos(Answer answer) = 0;
};

} // namespace kestrin::platform

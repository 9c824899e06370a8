#pragma once

#include <memory>

namespace kestrin {

class KestrinView;

/// Where a host application begins. Thread: any, unless said otherwise.
class KestrinCVSession {
  public:
    /// A new view. Thread: main.
    static std::shared_ptr<KestrinView> initKestrinView();
    /// Whether this device can track.
    static bool isARSupported();
    /// Whether this system can track pictures.
    static bool isMarkerARSupported();
    static bool isSimulator();

    KestrinCVSession() = delete;
};

} // namespace kestrin

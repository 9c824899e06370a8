#pragma once

#include <memory>

namespace kestrin::gtk {

/// Looking for cameras and holding one exclude each other in the whole process: both share one connection to
/// the PipeWire daemon, and GStreamer's search leaves things behind on a connection that outlives it. Thread:
/// any.
class CameraTurn {
  public:
    /// A camera is held as long as what this gives is kept. Waits while somebody looks.
    static std::shared_ptr<void> hold();
    /// Lasts as long as somebody looks; null while a camera is held. Waits while another looks.
    static std::shared_ptr<void> look();
};

} // namespace kestrin::gtk

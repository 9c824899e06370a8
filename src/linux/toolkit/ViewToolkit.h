#pragma once

#include "linux/toolkit/WidgetBox.h"
#include "platform/Log.h"
#include "platform/Widgets.h"

namespace kestrin::gtk {

/// Views as GTK widgets, interface resources as GtkBuilder files. Thread: main.
class ViewToolkit final : public platform::ViewToolkit {
  public:
    /// Told inside size-allocate of the size of a plain view that stands in the host's container.
    using RootAllocated = std::function<void(GtkWidget*, const platform::Size&)>;

    ViewToolkit(platform::LogSink& log, RootAllocated rootAllocated);

    std::unique_ptr<platform::ViewPeer> makePeer(platform::View& view) override;
    /// The parts are the resource's `KestrinViewWidget` objects by their ids, the root is its "mainView". The
    /// layout inside stays GTK's. The root keeps the parts alive.
    platform::Interface loadInterface(const std::string& name) override;

  private:
    platform::LogSink& m_log;
    const RootAllocated m_rootAllocated;
};

} // namespace kestrin::gtk

#include "linux/toolkit/ViewToolkit.h"

#include "linux/toolkit/InterfaceLoader.h"
#include "linux/toolkit/PlainPeer.h"

namespace kestrin::gtk {

ViewToolkit::ViewToolkit(platform::LogSink& log, RootAllocated rootAllocated)
    : m_log(log), m_rootAllocated(std::move(rootAllocated)) {}

std::unique_ptr<platform::ViewPeer> ViewToolkit::makePeer(platform::View& view) {
    return std::make_unique<PlainPeer>(view, m_rootAllocated);
}

platform::Interface ViewToolkit::loadInterface(const std::string& name) {
    return gtk::loadInterface(name, m_log);
}

} // namespace kestrin::gtk

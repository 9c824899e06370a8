#pragma once

#include "linux/toolkit/GRef.h"
#include "platform/Network.h"

#include <gio/gio.h>

#include <functional>
#include <string>
#include <vector>

namespace kestrin::gtk {

/// Resolves names of hosts. Thread: the I/O thread, but for beginning and end.
class HostLookup {
  public:
    using Done = std::function<void(const std::vector<platform::IpAddress>& addresses)>;

    /// `done` is called later, with nothing when the name has no address or nobody could tell.
    void run(const std::string& host, Done done);
    /// Ends what is under way, whose `done` is not called, then calls `ended`, possibly at once.
    void stop(std::function<void()> ended);

  private:
    struct Question;
    static void answer(GObject* resolver, GAsyncResult* result, gpointer question);
    void remove();

    const GRef<GResolver> m_resolver = GRef<GResolver>::adopt(g_resolver_get_default());
    const GRef<GCancellable> m_cancellable = GRef<GCancellable>::adopt(g_cancellable_new());
    int m_running = 0;
    std::function<void()> m_ended;
};

} // namespace kestrin::gtk

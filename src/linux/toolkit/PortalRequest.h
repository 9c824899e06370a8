#pragma once

#include "linux/toolkit/GRef.h"
#include "platform/Dispatch.h"

#include <gio/gio.h>
#include <gio/gunixfdlist.h>

#include <functional>
#include <memory>
#include <string>

namespace kestrin::gtk {

/// A question that one of the desktop's portals can put to the person.
struct PortalCall {
    std::string interface; ///< in full, such as "org.freedesktop.portal.Camera"
    std::string method;
    bool takesWindow = false; ///< as its first argument; no window is named
    GOwned<GVariantDict, g_variant_dict_unref> options{g_variant_dict_new(nullptr)};
    GRef<GUnixFDList> files{}; ///< that the options refer to
};

/// How long a portal may take, seconds.
struct PortalLimits {
    double toAccept = 5; ///< the question; it may have to be started
    double toAnswer = 60;
};

enum class PortalReply {
    done,
    refused,
    unanswered, ///< the question was accepted, but the person did not answer
    unavailable ///< there is no bus, no such portal, or it does not work
};

/// A question on its way. It lives until it is answered or cancelled. Thread: main.
class PortalRequest : public std::enable_shared_from_this<PortalRequest> {
  public:
    using Answer = std::function<void(PortalReply)>;

    /// Returns at once; answers once, later, unless it is cancelled.
    static std::shared_ptr<PortalRequest> send(PortalCall call, const PortalLimits& limits,
                                               platform::Dispatch& dispatch, Answer answer);
    /// Takes the question back; there will be no answer.
    void cancel();

  private:
    PortalRequest(PortalCall call, const PortalLimits& limits, platform::Dispatch& dispatch, Answer answer);

    template <void (PortalRequest::*took)(GAsyncResult*)>
    static void finished(GObject*, GAsyncResult* result, gpointer self);
    static void responded(GDBusConnection*, const char*, const char*, const char*, const char*,
                          GVariant* parameters, gpointer self);
    void connected(GAsyncResult* result);
    void listen();
    void call();
    void accepted(GAsyncResult* result);
    void limit(double seconds, PortalReply reply);
    void finish(PortalReply reply);
    void stop();
    bool isOver() const { return !m_answer; }

    PortalCall m_call;
    const PortalLimits m_limits;
    platform::Dispatch& m_dispatch;
    Answer m_answer; ///< empty when it was given, or is not wanted any more
    const GRef<GCancellable> m_cancellable = GRef<GCancellable>::adopt(g_cancellable_new());
    GRef<GDBusConnection> m_bus;
    std::string m_path; ///< of the request at the portal
    guint m_listener = 0;
    bool m_isOpen = false; ///< the portal may be asking
    bool m_isAccepted = false;
};

} // namespace kestrin::gtk

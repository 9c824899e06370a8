#include "linux/toolkit/PortalRequest.h"

#include <algorithm>
#include <utility>

namespace kestrin::gtk {

namespace {

constexpr const char* kPortal = "org.freedesktop.portal.Desktop";
constexpr const char* kObject = "/org/freedesktop/portal/desktop";
constexpr const char* kRequest = "org.freedesktop.portal.Request";
constexpr int kNoLimit = G_MAXINT; // the request has limits of its own

enum Response : guint32 { succeeded = 0, cancelled = 1 };

using Self = std::shared_ptr<PortalRequest>;

/// A name that no other request of this process has.
std::string newToken() {
    static guint32 count = 0;
    return "kestrin" + std::to_string(++count);
}

/// Where the portal puts the request: known beforehand, so that no answer comes too early.
std::string pathOf(GDBusConnection* bus, const std::string& token) {
    std::string sender = g_dbus_connection_get_unique_name(bus) + 1; // without the colon
    std::ranges::replace(sender, '.', '_');
    return std::string(kObject) + "/request/" + sender + "/" + token;
}

void close(GDBusConnection* bus, const std::string& path) {
    // Whoever waits for an answer keeps the connection until the call is out.
    const auto done = [](GObject* source, GAsyncResult* result, gpointer) {
        const GOwned<GVariant, g_variant_unref> ignored(
            g_dbus_connection_call_finish(G_DBUS_CONNECTION(source), result, nullptr));
    };
    g_dbus_connection_call(bus, kPortal, path.c_str(), kRequest, "Close", nullptr, nullptr,
                           G_DBUS_CALL_FLAGS_NO_AUTO_START, -1, nullptr, done, nullptr);
}

} // namespace

PortalRequest::PortalRequest(PortalCall call, const PortalLimits& limits, platform::Dispatch& dispatch,
                             Answer answer)
    : m_call(std::move(call)), m_limits(limits), m_dispatch(dispatch), m_answer(std::move(answer)) {}

std::shared_ptr<PortalRequest> PortalRequest::send(PortalCall call, const PortalLimits& limits,
                                                   platform::Dispatch& dispatch, Answer answer) {
    const Self self(new PortalRequest(std::move(call), limits, dispatch, std::move(answer)));
    g_bus_get(G_BUS_TYPE_SESSION, self->m_cancellable.get(), finished<&PortalRequest::connected>,
              new Self(self));
    self->limit(limits.toAccept, PortalReply::unavailable);
    return self;
}

template <void (PortalRequest::*took)(GAsyncResult*)>
void PortalRequest::finished(GObject*, GAsyncResult* result, gpointer self) {
    const std::unique_ptr<Self> owned(static_cast<Self*>(self));
    ((**owned).*took)(result);
}

void PortalRequest::connected(GAsyncResult* result) {
    m_bus = GRef<GDBusConnection>::adopt(g_bus_get_finish(result, nullptr));
    if (isOver())
        return;
    if (!m_bus)
        return finish(PortalReply::unavailable);
    listen();
    call();
}

void PortalRequest::listen() {
    const std::string token = newToken();
    g_variant_dict_insert(m_call.options.get(), "handle_token", "s", token.c_str());
    m_path = pathOf(m_bus.get(), token);
    const auto forget = [](gpointer self) { delete static_cast<Self*>(self); };
    m_listener = g_dbus_connection_signal_subscribe(m_bus.get(), kPortal, kRequest, "Response",
                                                    m_path.c_str(), nullptr, G_DBUS_SIGNAL_FLAGS_NONE,
                                                    responded, new Self(shared_from_this()), forget);
}

void PortalRequest::call() {
    GVariant* const options = g_variant_dict_end(m_call.options.get());
    GVariant* const arguments =
        m_call.takesWindow ? g_variant_new("(s@a{sv})", "", options) : g_variant_new("(@a{sv})", options);
    m_isOpen = true;
    g_dbus_connection_call_with_unix_fd_list(
        m_bus.get(), kPortal, kObject, m_call.interface.c_str(), m_call.method.c_str(), arguments,
        G_VARIANT_TYPE("(o)"), G_DBUS_CALL_FLAGS_NONE, kNoLimit, m_call.files.get(), m_cancellable.get(),
        finished<&PortalRequest::accepted>, new Self(shared_from_this()));
}

void PortalRequest::accepted(GAsyncResult* result) {
    const GOwned<GVariant, g_variant_unref> handle(
        g_dbus_connection_call_with_unix_fd_list_finish(m_bus.get(), nullptr, result, nullptr));
    if (isOver())
        return;
    if (!handle) {
        m_isOpen = false;
        return finish(PortalReply::unavailable);
    }
    m_isAccepted = true;
    limit(m_limits.toAnswer, PortalReply::unanswered);
}

void PortalRequest::responded(GDBusConnection*, const char*, const char*, const char*, const char*,
                              GVariant* parameters, gpointer data) {
    const Self self = *static_cast<Self*>(data);
    if (self->isOver() || !g_variant_is_of_type(parameters, G_VARIANT_TYPE("(ua{sv})")))
        return;
    guint32 response = 0;
    g_variant_get_child(parameters, 0, "u", &response);
    self->m_isOpen = false;
    self->finish(response == succeeded   ? PortalReply::done
                 : response == cancelled ? PortalReply::refused
                                         : PortalReply::unavailable);
}

void PortalRequest::limit(double seconds, PortalReply reply) {
    m_dispatch.mainAfter(seconds, [weak = weak_from_this(), reply] {
        const Self self = weak.lock();
        const bool isPast = self && self->m_isAccepted && reply == PortalReply::unavailable;
        if (self && !self->isOver() && !isPast)
            self->finish(reply);
    });
}

void PortalRequest::finish(PortalReply reply) {
    const Answer answer = std::exchange(m_answer, nullptr);
    stop();
    answer(reply);
}

void PortalRequest::cancel() {
    m_answer = nullptr;
    stop();
}

void PortalRequest::stop() {
    g_cancellable_cancel(m_cancellable.get());
    if (m_isOpen) // so that nobody is asked in vain
        close(m_bus.get(), m_path);
    m_isOpen = false;
    if (m_listener != 0)
        g_dbus_connection_signal_unsubscribe(m_bus.get(), std::exchange(m_listener, 0));
}

} // namespace kestrin::gtk

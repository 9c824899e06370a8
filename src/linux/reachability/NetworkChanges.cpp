#include "linux/reachability/NetworkChanges.h"

#include <glib-unix.h>
#include <linux/rtnetlink.h>

#include <utility>

namespace kestrin::gtk {

namespace {

constexpr unsigned groupBit(rtnetlink_groups group) { return 1U << (unsigned(group) - 1); }

constexpr unsigned kGroups = RTMGRP_LINK | RTMGRP_IPV4_IFADDR | RTMGRP_IPV6_IFADDR | RTMGRP_IPV4_ROUTE |
                             RTMGRP_IPV6_ROUTE | groupBit(RTNLGRP_IPV4_RULE) | groupBit(RTNLGRP_IPV6_RULE);

} // namespace

NetworkChanges::NetworkChanges(IoThread& io, std::function<void()> changed)
    : m_io(io), m_changed(std::move(changed)), m_socket(kGroups) {}

void NetworkChanges::listen() {
    if (!canListen())
        return;
    m_source = g_unix_fd_source_new(m_socket.descriptor(), G_IO_IN);
    const GUnixFDSourceFunc readable = [](gint, GIOCondition, gpointer self) -> gboolean {
        static_cast<NetworkChanges*>(self)->hear();
        return G_SOURCE_CONTINUE;
    };
    g_source_set_callback(m_source, G_SOURCE_FUNC(readable), this, nullptr);
    g_source_attach(m_source, g_main_context_get_thread_default());
}

NetworkChanges::~NetworkChanges() {
    if (m_source)
        g_source_unref(m_source);
}

void NetworkChanges::hear() {
    if (!m_socket.drain() || m_isFolding)
        return;
    m_isFolding = true;
    m_io.postAfter(kFoldMilliseconds, [this] {
        m_isFolding = false;
        m_changed();
    });
}

} // namespace kestrin::gtk

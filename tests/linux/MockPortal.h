#pragma once

#include "linux/toolkit/GRef.h"

#include <gio/gio.h>
#include <gio/gunixfdlist.h>

#include <string>
#include <unistd.h>
#include <vector>

namespace kestrin::test {

/// A session bus of the test's own, which the process uses as long as this lives, and then none.
class PrivateBus {
  public:
    static void none() { g_setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/no/such/bus", TRUE); }
    PrivateBus() : m_bus(gtk::GRef<GTestDBus>::adopt(g_test_dbus_new(G_TEST_DBUS_NONE))) {
        g_test_dbus_up(m_bus.get());
    }
    ~PrivateBus() {
        g_test_dbus_down(m_bus.get());
        none();
    }
    const char* address() const { return g_test_dbus_get_bus_address(m_bus.get()); }

  private:
    const gtk::GRef<GTestDBus> m_bus;
};

/// A portal on that bus. It runs in this process, on the main loop.
class MockPortal {
  public:
    enum Manner { grants = 0, denies = 1, fails = 2, isSilent };

    MockPortal(const PrivateBus& bus, Manner manner)
        : m_manner(manner), m_connection(gtk::GRef<GDBusConnection>::adopt(connect(bus.address()))) {
        provide("/org/freedesktop/portal/desktop", "org.freedesktop.portal.Camera");
        provide("/org/freedesktop/portal/desktop", "org.freedesktop.portal.Email");
        call("RequestName", g_variant_new("(su)", "org.freedesktop.portal.Desktop", 0));
    }
    ~MockPortal() { g_dbus_connection_close_sync(m_connection.get(), nullptr, nullptr); }

    std::vector<std::string> calls;  ///< the methods called so far
    std::string options;             ///< of the latest question, as GVariant text
    std::vector<std::string> pieces; ///< the contents of its files

  private:
    static constexpr const char* kInterfaces = R"(<node>
<interface name="org.freedesktop.portal.Camera"><method name="AccessCamera">
  <arg type="a{sv}" direction="in"/><arg type="o" direction="out"/></method></interface>
<interface name="org.freedesktop.portal.Email"><method name="ComposeEmail">
  <arg type="s" direction="in"/><arg type="a{sv}" direction="in"/><arg type="o" direction="out"/></method></interface>
<interface name="org.freedesktop.portal.Request"><method name="Close"/></interface>
</node>)";

    static GDBusConnection* connect(const char* address) {
        constexpr auto kFlags = GDBusConnectionFlags(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                                     G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
        return g_dbus_connection_new_for_address_sync(address, kFlags, nullptr, nullptr, nullptr);
    }
    void call(const char* method, GVariant* arguments) {
        const gtk::GOwned<GVariant, g_variant_unref> reply(g_dbus_connection_call_sync(
            m_connection.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
            method, arguments, nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr));
    }
    void provide(const char* path, const char* interface) {
        static GDBusNodeInfo* const all = g_dbus_node_info_new_for_xml(kInterfaces, nullptr);
        static const GDBusInterfaceVTable kCalls{called, nullptr, nullptr, {}};
        g_dbus_connection_register_object(m_connection.get(), path,
                                          g_dbus_node_info_lookup_interface(all, interface), &kCalls, this,
                                          nullptr, nullptr);
    }
    static void called(GDBusConnection*, const char* sender, const char*, const char*, const char* method,
                       GVariant* arguments, GDBusMethodInvocation* invocation, gpointer self) {
        static_cast<MockPortal*>(self)->take(sender, method, arguments, invocation);
    }
    void take(std::string sender, const std::string& method, GVariant* arguments,
              GDBusMethodInvocation* invocation) {
        calls.push_back(method);
        if (method == "Close")
            return g_dbus_method_invocation_return_dbus_error(invocation, "org.kestrin.Test", "no");
        const gtk::GOwned<GVariant, g_variant_unref> given(
            g_variant_get_child_value(arguments, g_variant_n_children(arguments) - 1));
        options = gtk::GText(g_variant_print(given.get(), FALSE)).get();
        readFiles(g_dbus_message_get_unix_fd_list(g_dbus_method_invocation_get_message(invocation)));
        const char* token = "";
        g_variant_lookup(given.get(), "handle_token", "&s", &token);
        for (char& letter : sender)
            letter = letter == '.' ? '_' : letter;
        const std::string path = "/org/freedesktop/portal/desktop/request/" + sender.substr(1) + "/" + token;
        provide(path.c_str(), "org.freedesktop.portal.Request");
        g_dbus_method_invocation_return_value(invocation, g_variant_new("(o)", path.c_str()));
        if (m_manner != isSilent)
            g_dbus_connection_emit_signal(m_connection.get(), nullptr, path.c_str(),
                                          "org.freedesktop.portal.Request", "Response",
                                          g_variant_new("(ua{sv})", guint32(m_manner), nullptr), nullptr);
    }
    void readFiles(GUnixFDList* files) {
        for (int i = 0; files && i < g_unix_fd_list_get_length(files); ++i) {
            const int file = g_unix_fd_list_get(files, i, nullptr);
            const std::string name = "/proc/self/fd/" + std::to_string(file);
            char* bytes = nullptr;
            gsize size = 0;
            g_file_get_contents(name.c_str(), &bytes, &size, nullptr);
            pieces.emplace_back(gtk::GText(bytes) ? bytes : "", size);
            close(file);
        }
    }

    const Manner m_manner;
    const gtk::GRef<GDBusConnection> m_connection;
};

} // namespace kestrin::test

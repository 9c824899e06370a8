#include "content/ListeningSocket.h"

#include <stdexcept>
#include <sys/socket.h>

namespace kestrin::content {

GPointer<GSocket> listenOn(const std::string& address, std::uint16_t port) {
    const auto ip = GPointer<GInetAddress>::adopt(g_inet_address_new_from_string(address.c_str()));
    if (!ip)
        throw std::runtime_error("\"" + address + "\" is not an IP address");
    GFailure failure;
    const auto place = GPointer<GSocketAddress>::adopt(g_inet_socket_address_new(ip.get(), port));
    auto socket = GPointer<GSocket>::adopt(g_socket_new(
        g_inet_address_get_family(ip.get()), G_SOCKET_TYPE_STREAM, G_SOCKET_PROTOCOL_TCP, failure.out()));
    if (socket)
        g_socket_set_listen_backlog(socket.get(), SOMAXCONN);
    if (!socket || !g_socket_bind(socket.get(), place.get(), TRUE, failure.out()) ||
        !g_socket_listen(socket.get(), failure.out()))
        throw std::runtime_error("listening on " + address + " port " + std::to_string(port) + ": " +
                                 failure.text());
    return socket;
}

Endpoint endpointOf(GSocket* listening) {
    GFailure failure;
    const auto local = GPointer<GSocketAddress>::adopt(g_socket_get_local_address(listening, failure.out()));
    if (!local)
        throw std::runtime_error(std::string("asking for the port: ") + failure.text());
    auto* const address = G_INET_SOCKET_ADDRESS(local.get());
    auto ip = GPointer<GInetAddress>::share(g_inet_socket_address_get_address(address));
    const GSocketFamily family = g_inet_address_get_family(ip.get());
    if (g_inet_address_get_is_any(ip.get()))
        ip = GPointer<GInetAddress>::adopt(g_inet_address_new_loopback(family));
    const std::string text = GText(g_inet_address_to_string(ip.get())).get();
    return {family == G_SOCKET_FAMILY_IPV6 ? "[" + text + "]" : text,
            g_inet_socket_address_get_port(address)};
}

} // namespace kestrin::content

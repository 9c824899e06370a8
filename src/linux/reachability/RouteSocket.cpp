#include "linux/reachability/RouteSocket.h"

#include <linux/netlink.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>

namespace kestrin::gtk {

namespace {

constexpr std::size_t kRoom = 32U << 10U; // what the kernel puts into one part of an answer

/// For a library that calls back with what it was given, through a pointer to what may be changed.
template <class Thing>
int pass(const Thing* thing, void* each) {
    (*static_cast<const std::function<void(const Thing&)>*>(each))(*thing);
    return MNL_CB_OK;
}

template <class Thing>
void* passTo(const std::function<void(const Thing&)>& each) {
    return const_cast<std::function<void(const Thing&)>*>(&each);
}

} // namespace

void eachAttribute(const nlmsghdr& message, std::size_t header,
                   const std::function<void(const nlattr&)>& each) {
    mnl_attr_parse(&message, unsigned(header), pass<nlattr>, passTo(each));
}

RouteSocket::RouteSocket(unsigned groups)
    : m_socket(mnl_socket_open2(NETLINK_ROUTE, SOCK_CLOEXEC | (groups ? SOCK_NONBLOCK : 0))) {
    if (m_socket && mnl_socket_bind(m_socket.get(), groups, MNL_SOCKET_AUTOPID) < 0)
        m_socket.reset();
}

bool RouteSocket::ask(nlmsghdr& request, const std::function<void(const nlmsghdr&)>& each) {
    request.nlmsg_flags |= NLM_F_REQUEST;
    if (!m_socket || mnl_socket_sendto(m_socket.get(), &request, request.nlmsg_len) < 0)
        return false;
    const bool isDump = (request.nlmsg_flags & NLM_F_DUMP) == NLM_F_DUMP;
    alignas(nlmsghdr) std::array<char, kRoom> part;
    while (true) {
        const auto size = mnl_socket_recvfrom(m_socket.get(), part.data(), part.size());
        if (size <= 0)
            return false;
        const int more = mnl_cb_run(part.data(), std::size_t(size), 0, 0, pass<nlmsghdr>, passTo(each));
        if (more < 0)
            return false;
        if (more == MNL_CB_STOP || !isDump)
            return true;
    }
}

bool RouteSocket::drain() {
    std::array<char, kRoom> part;
    bool came = false;
    while (true) {
        const bool read = mnl_socket_recvfrom(m_socket.get(), part.data(), part.size()) >= 0;
        // More than the socket could keep, or than fits here: something has changed then, too.
        if (!read && errno != ENOBUFS && errno != ENOSPC)
            return came;
        came = true;
    }
}

} // namespace kestrin::gtk

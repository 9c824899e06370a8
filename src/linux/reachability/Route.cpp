#include "linux/reachability/Route.h"

#include <linux/rtnetlink.h>
#include <sys/socket.h>

#include <array>

namespace kestrin::gtk {

namespace {

bool leadsSomewhere(int type) {
    return type == RTN_UNICAST || type == RTN_LOCAL || type == RTN_BROADCAST || type == RTN_ANYCAST ||
           type == RTN_MULTICAST;
}

std::optional<Route> readRoute(const nlmsghdr& answer) {
    const auto* const header = static_cast<const rtmsg*>(mnl_nlmsg_get_payload(&answer));
    if (answer.nlmsg_type != RTM_NEWROUTE || !leadsSomewhere(header->rtm_type))
        return std::nullopt;
    Route route;
    route.isLocal = header->rtm_type == RTN_LOCAL;
    eachAttribute(answer, sizeof(rtmsg), [&](const nlattr& attribute) {
        const int type = mnl_attr_get_type(&attribute);
        if (type == RTA_OIF && mnl_attr_validate(&attribute, MNL_TYPE_U32) == 0)
            route.link = int(mnl_attr_get_u32(&attribute));
        else if (type == RTA_GATEWAY || type == RTA_VIA)
            route.hasGateway = true;
    });
    return route;
}

} // namespace

std::optional<Route> findRoute(RouteSocket& socket, const platform::IpAddress& address) {
    alignas(nlmsghdr) std::array<char, 256> room{};
    nlmsghdr* const request = mnl_nlmsg_put_header(room.data());
    request->nlmsg_type = RTM_GETROUTE;
    auto* const header = static_cast<rtmsg*>(mnl_nlmsg_put_extra_header(request, sizeof(rtmsg)));
    header->rtm_family = std::holds_alternative<platform::Ipv4Address>(address) ? AF_INET : AF_INET6;
    std::visit(
        [&](const auto& bytes) {
            header->rtm_dst_len = static_cast<unsigned char>(bytes.size() * 8);
            mnl_attr_put(request, RTA_DST, bytes.size(), bytes.data());
        },
        address);
    std::optional<Route> route;
    const bool answered = socket.ask(*request, [&](const nlmsghdr& answer) { route = readRoute(answer); });
    return answered ? route : std::nullopt;
}

} // namespace kestrin::gtk

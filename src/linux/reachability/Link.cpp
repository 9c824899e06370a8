#include "linux/reachability/Link.h"

#include <linux/rtnetlink.h>
#include <net/if.h>

#include <array>

namespace kestrin::gtk {

namespace {

Link read(const nlmsghdr& answer) {
    const auto* const header = static_cast<const ifinfomsg*>(mnl_nlmsg_get_payload(&answer));
    Link link;
    link.isRunning = (header->ifi_flags & IFF_UP) && (header->ifi_flags & IFF_RUNNING);
    eachAttribute(answer, sizeof(ifinfomsg), [&](const nlattr& attribute) {
        const bool isName = mnl_attr_get_type(&attribute) == IFLA_IFNAME;
        if (isName && mnl_attr_validate(&attribute, MNL_TYPE_NUL_STRING) == 0)
            link.name = mnl_attr_get_str(&attribute);
    });
    return link;
}

std::vector<Link> ask(RouteSocket& socket, int index, std::uint16_t flags) {
    alignas(nlmsghdr) std::array<char, 256> room{};
    nlmsghdr* const request = mnl_nlmsg_put_header(room.data());
    request->nlmsg_type = RTM_GETLINK;
    request->nlmsg_flags = flags;
    static_cast<ifinfomsg*>(mnl_nlmsg_put_extra_header(request, sizeof(ifinfomsg)))->ifi_index = index;
    std::vector<Link> links;
    const bool answered = socket.ask(*request, [&](const nlmsghdr& answer) {
        if (answer.nlmsg_type == RTM_NEWLINK)
            links.push_back(read(answer));
    });
    return answered ? links : std::vector<Link>();
}

} // namespace

std::optional<Link> readLink(RouteSocket& socket, int index) {
    const auto links = ask(socket, index, 0);
    return links.empty() ? std::nullopt : std::optional(links.front());
}

std::vector<Link> readLinks(RouteSocket& socket) { return ask(socket, 0, NLM_F_DUMP); }

} // namespace kestrin::gtk

#include "linux/network/HostMap.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace kestrin::gtk {
namespace {

TEST(HostMap, ReadsEntries) {
    const HostMap map = HostMap::parse("server.test=127.0.0.1:8443,Other.Test=[::1]:1,third=localhost:65535");
    const auto target = [&](const char* host) {
        const HostMap::Target* found = map.find(host);
        return found ? found->address + " " + std::to_string(found->port) : "none";
    };
    EXPECT_EQ(target("SERVER.TEST"), "127.0.0.1 8443");
    EXPECT_EQ(target("other.test"), "::1 1");
    EXPECT_EQ(target("third"), "localhost 65535");
    EXPECT_EQ(target("test"), "none");
}

TEST(HostMap, SaysWhatIsWrong) {
    for (const auto& [text, part] : {std::pair{"server.test", "'server.test': '=' is missing"},
                                     {"a:443=1.2.3.4:5", "'a:443': the host is a bare name"},
                                     {"a=1.2.3.4", "'1.2.3.4': the port is missing"},
                                     {"a=1.2.3.4:65536", "'65536': the port is not a number"},
                                     {"a=b:1,A=c:2", "'A': the host is named twice"}})
        EXPECT_THAT([wrong = text] { HostMap::parse(wrong); },
                    testing::ThrowsMessage<std::invalid_argument>(testing::HasSubstr(part)));
}

} // namespace
} // namespace kestrin::gtk

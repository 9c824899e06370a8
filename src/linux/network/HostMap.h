#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace kestrin::gtk {

/// Where hosts are reached, other than where their names lead. What the server sees stays the host's own
/// name.
class HostMap {
  public:
    struct Target {
        std::string address; ///< a name or a numeric address, without brackets
        std::uint16_t port = 0;
    };

    /// Reads "HOST=ADDRESS:PORT[,...]"; a numeric IPv6 address stands in brackets. An empty text is an empty
    /// map. Throws std::invalid_argument that names the entry and what is wrong with it.
    static HostMap parse(std::string_view text);

    /// `target` is "ADDRESS:PORT", as above. Throws as above.
    void add(std::string_view host, std::string_view target);

    /// Null when the host is reached as usual. Upper and lower case are the same.
    const Target* find(std::string_view host) const;

  private:
    std::map<std::string, Target, std::less<>> m_targets;
};

} // namespace kestrin::gtk

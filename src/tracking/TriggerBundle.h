#pragma once

#include <boost/json/fwd.hpp>

#include <cstddef>
#include <string>
#include <vector>

namespace kestrin {

/// What the server tells of an application's image triggers. Records that lack what they need are left out.
struct TriggerBundle {
    struct Trigger {
        std::string id;
        std::string address;         ///< of its image
        float width = 0, height = 0; ///< as printed, millimetres; 0 when the server does not say
    };

    /// From the server's answer. Thread: any.
    static TriggerBundle read(const boost::json::value& answer);

    std::vector<Trigger> triggers; ///< one an id, in the order in which the ids came; the last record wins
    std::size_t records = 0;       ///< complete ones, those that another of the same id replaced included
};

} // namespace kestrin

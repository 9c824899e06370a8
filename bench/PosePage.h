#pragma once

#include "content/ContentServer.h"

#include <boost/json/fwd.hpp>

#include <memory>
#include <optional>
#include <string_view>

namespace kestrin::bench {

/// A server of the page that answers every pose. Ends the process, with the reason, when it cannot start.
std::unique_ptr<content::ContentServer> servePosePage();

/// The time in one of the page's messages, as it was posted; none in other messages.
std::optional<double> timeIn(std::string_view message);
std::optional<double> timeIn(const boost::json::object& event);

} // namespace kestrin::bench

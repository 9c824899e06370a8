#include "PosePage.h"

#include "services/util/Json.h"
#include "services/util/KestrinUtil.h"

#include <boost/json/value.hpp>

#include <cstdio>
#include <cstdlib>

namespace kestrin::bench {

std::unique_ptr<content::ContentServer> servePosePage() {
    content::Application application;
    application.page = KESTRIN_BENCH_PAGE;
    auto server = std::make_unique<content::ContentServer>(application);
    if (const auto problem = server->start()) {
        std::fprintf(stderr, "%s\n", problem->c_str());
        std::exit(2);
    }
    return server;
}

std::optional<double> timeIn(std::string_view message) {
    const auto event = KestrinUtil::json64ToDict(message);
    const auto* object = event ? event->if_object() : nullptr;
    return object ? timeIn(*object) : std::nullopt;
}

std::optional<double> timeIn(const boost::json::object& event) {
    const auto* time = findMember(event, {"data", "time"});
    return time && time->is_number() ? std::optional(time->to_number<double>()) : std::nullopt;
}

} // namespace kestrin::bench

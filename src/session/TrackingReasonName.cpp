#include "session/TrackingReasonName.h"

#include <algorithm>
#include <array>

namespace kestrin::session {

using platform::TrackingReason;

namespace {

/// In the order of the enumeration.
constexpr std::array<std::string_view, 5> kNames{"normal", "initializing", "excessiveMotion",
                                                 "insufficientFeatures", "relocalizing"};
static_assert(std::size_t(TrackingReason::relocalizing) + 1 == kNames.size());

} // namespace

std::string_view nameOf(TrackingReason reason) { return kNames[std::size_t(reason)]; }

std::optional<TrackingReason> reasonNamed(std::string_view name) {
    const auto found = std::find(kNames.begin(), kNames.end(), name);
    if (found == kNames.end())
        return {};
    return TrackingReason(found - kNames.begin());
}

} // namespace kestrin::session

#include "platform/Platform.h"

#include <cassert>
#include <utility>

namespace kestrin::platform {

namespace {
// Never destroyed at exit: other threads may still log.
std::shared_ptr<Platform>& installed() {
    static auto& slot = *new std::shared_ptr<Platform>;
    return slot;
}
} // namespace

void installPlatform(std::shared_ptr<Platform> platform) { installed() = std::move(platform); }

Platform& platform() {
    assert(installed() && "install a platform first");
    return *installed();
}

} // namespace kestrin::platform

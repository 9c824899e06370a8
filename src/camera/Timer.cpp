#include "camera/Timer.h"

#include "platform/Platform.h"
#include "services/util/Singleton.h"
#include "services/util/Snapshot.h"

#include <map>

namespace kestrin {

namespace {

struct Timers {
    Snapshot<std::map<std::string, double>> began; ///< seconds
};

double now() { return platform::platform().dispatch().now(); }

} // namespace

void Timer::initInstance() { singleton<Timers>(); }

void Timer::start(const std::string& name) {
    singleton<Timers>()->began.update([&](auto& began) { began[name] = now(); });
}

double Timer::stop(const std::string& name) {
    const double ended = now();
    const auto began = singleton<Timers>()->began.read();
    const auto entry = began->find(name);
    return entry == began->end() ? 0 : (ended - entry->second) * 1000;
}

} // namespace kestrin

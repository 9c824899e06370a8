// What a server can tell of an application's image triggers: any bytes.
#include "services/util/Json.h"
#include "tracking/TriggerBundle.h"

#include <boost/json/value.hpp>

#include <cmath>
#include <set>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kestrin;
    const auto answer = parseJson({reinterpret_cast<const char*>(data), size});
    if (!answer)
        return 0;
    const TriggerBundle bundle = TriggerBundle::read(*answer);
    std::set<std::string> ids;
    for (const TriggerBundle::Trigger& trigger : bundle.triggers)
        if (!ids.insert(trigger.id).second || !std::isfinite(trigger.width) || !std::isfinite(trigger.height))
            __builtin_trap();
    if (ids.size() > bundle.records)
        __builtin_trap();
    return 0;
}

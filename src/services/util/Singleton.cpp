#include "services/util/Singleton.h"

#include <map>
#include <mutex>

namespace kestrin {

namespace {

struct Registry {
    std::recursive_mutex mutex; // one singleton's constructor may ask for another
    std::map<std::type_index, std::shared_ptr<void>> objects;
};

Registry& registry() {
    static auto& lasting = *new Registry;
    return lasting;
}

} // namespace

std::shared_ptr<void> singleton(std::type_index type, std::shared_ptr<void> (*make)()) {
    Registry& all = registry();
    const std::lock_guard lock(all.mutex);
    const auto found = all.objects.find(type);
    if (found != all.objects.end())
        return found->second;
    auto made = make();
    all.objects.emplace(type, made);
    return made;
}

void resetSingletons() {
    Registry& all = registry();
    std::map<std::type_index, std::shared_ptr<void>> gone; // destroyed after the lock is given back
    const std::lock_guard lock(all.mutex);
    gone.swap(all.objects);
}

} // namespace kestrin

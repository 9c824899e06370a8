#include "platform/NotificationCenter.h"

#include <algorithm>
#include <utility>

namespace kestrin::platform {

void NotificationCenter::addObserver(const void* observer, const std::string& name, Callback callback) {
    m_entries.push_back({observer, name, std::move(callback)});
}

void NotificationCenter::removeObserver(const void* observer, const std::string& name) {
    std::erase_if(m_entries,
                  [&](const Entry& entry) { return entry.observer == observer && entry.name == name; });
}

void NotificationCenter::post(const std::string& name, std::shared_ptr<void> sender) {
    const Notification notification{name, std::move(sender)};
    const std::vector<Entry> told = m_entries;
    for (const Entry& entry : told) {
        const bool stillThere = std::ranges::any_of(m_entries, [&](const Entry& present) {
            return present.observer == entry.observer && present.name == entry.name;
        });
        if (entry.name == name && stillThere)
            entry.callback(notification);
    }
}

} // namespace kestrin::platform

#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace kestrin::platform {

inline constexpr const char* kWillResignActive = "UIApplicationWillResignActiveNotification";
inline constexpr const char* kDidBecomeActive = "UIApplicationDidBecomeActiveNotification";
inline constexpr const char* kDidEnterBackground = "UIApplicationDidEnterBackgroundNotification";
inline constexpr const char* kWillTerminate = "UIApplicationWillTerminateNotification";

struct Notification {
    std::string name;
    std::shared_ptr<void> sender; ///< null for the application's own
};

/// Tells observers of named notifications. Thread: main.
class NotificationCenter {
  public:
    using Callback = std::function<void(const Notification& notification)>;

    /// `observer` is an identity for removal; it is never looked into. Observers are told in the order added.
    void addObserver(const void* observer, const std::string& name, Callback callback);
    void removeObserver(const void* observer, const std::string& name);
    /// Observers may add and remove observers meanwhile; those added are not told, those removed neither.
    void post(const std::string& name, std::shared_ptr<void> sender = nullptr);

  private:
    struct Entry {
        const void* observer;
        std::string name;
        Callback callback;
    };
    std::vector<Entry> m_entries;
};

} // namespace kestrin::platform

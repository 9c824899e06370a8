#pragma once

#include "services/util/Snapshot.h"

#include <boost/json/fwd.hpp>

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestrin {

/// The words that switch features on, first those packaged with the host application, then the server's.
class KestrinFeatureFlags : public std::enable_shared_from_this<KestrinFeatureFlags> {
  public:
    using SyncCallback = std::function<void()>;

    /// Thread: any.
    static std::shared_ptr<KestrinFeatureFlags> getInstance();
    /// Holds the packaged flags.
    KestrinFeatureFlags();

    /// Exact membership. Thread: any, as for the next four.
    bool containsFlag(std::string_view flag) const;
    /// Appends, also what is there already.
    void put(std::string flag);
    void clear();
    /// Base64 of the JSON list.
    std::string toJson() const;
    void print() const;

    /// Drops all flags and asks the server, an origin, for those of the application. Thread: main.
    void sync(const std::string& serverUrl, const std::optional<std::string>& applicationID);
    /// Whether a sync has ended, well or not, since the last began. Thread: any.
    bool synced() const { return m_synced; }
    /// Calls `callback` on main once a sync has succeeded; the newest waiter only. After a failed sync a
    /// waiter stays waiting, and a later call is answered at once. Thread: any.
    void syncCallback(SyncCallback callback);

    /// What the page is told of the host application: base64 of a JSON object. Thread: any.
    std::string getAppDetailBase64() const;

  private:
    void onAnswer(const std::optional<boost::json::value>& answer);

    Snapshot<std::vector<std::string>> m_flags;
    std::atomic<bool> m_synced = false;
    SyncCallback m_pendingCallback; ///< main only
};

} // namespace kestrin

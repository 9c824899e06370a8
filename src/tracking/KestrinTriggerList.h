#pragma once

#include "platform/View.h"
#include "tracking/TriggerSetBuild.h"

#include <boost/json/fwd.hpp>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace kestrin {

class MarkerLoadingView;

/// The image triggers of the running application: loads them from the server, by way of a cache in the
/// documents folder, and hands them to whoever tracks. Shows an overlay meanwhile. Thread: any, unless said
/// otherwise.
class KestrinTriggerList : public std::enable_shared_from_this<KestrinTriggerList> {
  public:
    using SetCallback = std::function<void(const TriggerSet& triggers)>;

    /// The first use makes a view. Thread: main for the first use, then any.
    static std::shared_ptr<KestrinTriggerList> getInstance();
    KestrinTriggerList();
    ~KestrinTriggerList();

    /// Whether the feature flags ask for triggers now.
    static bool wantsToSupport();
    /// Whether they did, on a system that can, when the list was made or `resync` was called last.
    static bool isSupported();
    bool supported() const { return _canSupport; }
    void resync();

    /// Starts a load, unless one is running: an origin, and an application's id. Triggers that cannot be had
    /// are left out; without an answer the former set stays.
    void loadFromAPIForARKit(const std::string& serverOrigin,
                             const std::optional<std::string>& applicationID);
    /// Ends a load; posts itself to main when called elsewhere.
    void completeARKitFromMainThread();

    /// Whether no load is running.
    bool isReady() const;
    /// Calls `callback` with the set: at once, on the calling thread, when no load is running, else on main
    /// when the load ends. The newest waiter replaces the one before, and is called again after every later
    /// load: it must hold weakly what it uses.
    void loadForARKit(SetCallback callback);
    TriggerSet getARKitTriggerSet() const;

    /// The image turned about its centre, clockwise as seen, on a transparent canvas that just holds it; an
    /// absent one stays absent.
    static platform::Image imageRotatedByDegrees(const platform::Image& image, double degrees);

    /// The overlay's. They post themselves to main when called elsewhere.
    void addToParentView(const std::shared_ptr<platform::View>& parent);
    void removeFromParentView();
    void clipToParent();

  private:
    void onAnswer(std::optional<boost::json::value> answer);
    void buildSet(const boost::json::value& answer);

    const std::shared_ptr<MarkerLoadingView> _mainLoadingView;
    std::atomic<bool> _canSupport;

    mutable std::mutex m_mutex; ///< guards the rest
    TriggerSet _mARKitSet;
    SetCallback _callback;
    bool _mIsReady = true;
};

} // namespace kestrin

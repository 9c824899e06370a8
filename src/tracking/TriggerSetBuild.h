#pragma once

#include "platform/ArSession.h"
#include "tracking/TriggerBundle.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

namespace kestrin {

using TriggerSet = std::vector<std::shared_ptr<const platform::ArReferenceImage>>;

/// Makes reference images of a bundle's triggers, on workers. Cached pictures are read ahead, several at a
/// time; everything else, downloads included, happens trigger by trigger in the bundle's order.
class TriggerSetBuild : public std::enable_shared_from_this<TriggerSetBuild> {
  public:
    /// In [0, 1].
    using Progress = std::function<void(float)>;
    using Done = std::function<void(TriggerSet)>;

    /// Both are called on workers, one call at a time; `done` once, last. Thread: any.
    static void start(TriggerBundle bundle, Progress progress, Done done);

  private:
    using Trigger = TriggerBundle::Trigger;
    TriggerSetBuild(TriggerBundle bundle, Progress progress, Done done);
    void readAhead(); ///< with the mutex held
    void take(std::size_t place, platform::Image cached);
    void add(const Trigger& trigger, platform::Image image);
    platform::Image download(const Trigger& trigger) const;

    const TriggerBundle m_bundle;
    const std::int64_t m_mostPixels; ///< of a reference image
    const Progress m_progress;
    const Done m_done;

    std::mutex m_mutex;
    std::size_t m_nextToRead = 0;                  // guarded
    std::map<std::size_t, platform::Image> m_read; // guarded; read ahead, by place in the bundle
    std::size_t m_nextToTake = 0;                  // guarded
    bool m_isTaking = false;                       // guarded

    // Of whoever is taking.
    TriggerSet m_set;
};

} // namespace kestrin

#pragma once

#include <boost/json/fwd.hpp>

#include <cstddef>
#include <memory>

namespace kestrin {

/// The whole message that the page posted, "eventName" included; null for one that was no JSON object.
/// Shared, never changed.
using EventData = std::shared_ptr<const boost::json::object>;

/// Receives what the page posts.
class WebEventDelegate {
  public:
    virtual ~WebEventDelegate() = default;
    /// `event` is the number of KestrinWebEvent, its not-found number included. Thread: any.
    virtual void onWebEvent(std::ptrdiff_t event, EventData data) = 0;
};

} // namespace kestrin

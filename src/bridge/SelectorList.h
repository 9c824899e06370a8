#pragma once

#include <boost/json/fwd.hpp>

#include <functional>
#include <memory>
#include <utility>

namespace kestrin {

/// One registered handler: an operation of a target that it does not keep alive. Thread: main.
class SelectorList {
  public:
    /// Called with the live target.
    using Selector = std::function<void(void* target, const boost::json::object& data)>;

    Selector selector;
    std::weak_ptr<void> impl;

    static std::shared_ptr<SelectorList> initWithData(Selector selector, std::weak_ptr<void> impl);

    /// False when the target is gone.
    bool execute(const boost::json::object& data) const;
};

} // namespace kestrin

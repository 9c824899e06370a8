#pragma once

#include <boost/json/object.hpp>
#include <boost/json/value.hpp>

#include <memory>
#include <string>
#include <string_view>

namespace kestrin {

/// One event for the page under construction: {"eventName": "sdk" + name, "data": {...}}. Thread: main.
class AppEventStack {
  public:
    static std::shared_ptr<AppEventStack> initWithName(std::string name);
    AppEventStack(const AppEventStack&) = delete;
    AppEventStack& operator=(const AppEventStack&) = delete;

    /// Sets a member of "data"; an absent value (JSON null) is sent as null.
    void put(std::string_view key, boost::json::value value);
    /// Empties "data".
    AppEventStack& clear();
    const boost::json::object& getMainStack() const { return mMainStack; }
    /// The name without the prefix.
    const std::string& getName() const { return mName; }
    void print() const;

  private:
    explicit AppEventStack(std::string name);

    const std::string mName;
    boost::json::object mMainStack;
    boost::json::object& mSubStack; ///< "data" of the above
};

} // namespace kestrin

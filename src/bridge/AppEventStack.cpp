#include "bridge/AppEventStack.h"

#include "services/util/Format.h"
#include "services/util/KestrinUtil.h"

#include <utility>

namespace kestrin {

std::shared_ptr<AppEventStack> AppEventStack::initWithName(std::string name) {
    return std::shared_ptr<AppEventStack>(new AppEventStack(std::move(name)));
}

AppEventStack::AppEventStack(std::string name)
    : mName(std::move(name)), mMainStack{{"eventName", "sdk" + mName}, {"data", boost::json::object()}},
      mSubStack(mMainStack.at("data").as_object()) {}

void AppEventStack::put(std::string_view key, boost::json::value value) {
    mSubStack.insert_or_assign(key, std::move(value));
}

AppEventStack& AppEventStack::clear() {
    mSubStack.clear();
    return *this;
}

void AppEventStack::print() const { log("AppEventStack -> %@", KestrinUtil::dictToJSON(&mMainStack)); }

} // namespace kestrin

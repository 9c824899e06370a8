#include "bridge/SelectorList.h"

namespace kestrin {

std::shared_ptr<SelectorList> SelectorList::initWithData(Selector selector, std::weak_ptr<void> impl) {
    auto record = std::make_shared<SelectorList>();
    record->selector = std::move(selector);
    record->impl = std::move(impl);
    return record;
}

bool SelectorList::execute(const boost::json::object& data) const {
    const auto target = impl.lock();
    if (!target)
        return false;
    selector(target.get(), data);
    return true;
}

} // namespace kestrin

#pragma once

#include <memory>
#include <typeindex>

namespace kestrin {

/// The one object that `make` makes for `type`, made at the first call by whichever thread comes first.
std::shared_ptr<void> singleton(std::type_index type, std::shared_ptr<void> (*make)());

/// The one T of the process: made on first use, never destroyed at exit (other threads may still use it).
/// Thread: any.
template <class T>
std::shared_ptr<T> singleton() {
    return std::static_pointer_cast<T>(
        singleton(typeid(T), []() -> std::shared_ptr<void> { return std::shared_ptr<T>(new T); }));
}

/// Lets go of every singleton, so that the next use makes it afresh. For tests.
void resetSingletons();

} // namespace kestrin

#include "platform/Orientation.h"

#include <utility>

namespace kestrin::platform {

namespace {
constexpr int kNotPinned = -1;
thread_local int pinned = kNotPinned;
} // namespace

int InterfaceOrientation::current() const { return pinned == kNotPinned ? m_code.load() : pinned; }

InterfaceOrientation::Pin::Pin(int code) : m_previous(std::exchange(pinned, code)) {}

InterfaceOrientation::Pin::~Pin() { pinned = m_previous; }

} // namespace kestrin::platform

#pragma once

#include "platform/Platform.h"

#include <string>

namespace kestrin {

/// The picture in a file's bytes; absent when they are none, or too large a one. Thread: any.
inline platform::Image decodeImage(const std::string& bytes) {
    return platform::platform().images().decode(
        {reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
}

} // namespace kestrin

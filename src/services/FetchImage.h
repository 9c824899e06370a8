#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace kestrin {

class KestrinImage;

/// Hands over the picture at an address, which holds none when there is none: at once for no address and for
/// a `data:` one, later on main for others, which a worker fetches. Thread: main.
void fetchImage(const std::optional<std::string>& url,
                std::function<void(const std::shared_ptr<KestrinImage>& image)> use);

} // namespace kestrin

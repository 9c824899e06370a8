#pragma once

#include <optional>
#include <string>

namespace kestrin {

/// Names an object of the server. A plain value.
class KestrinID {
  public:
    static KestrinID initWith(std::optional<std::string> type, std::optional<std::string> uuid) {
        return KestrinID(std::move(type), std::move(uuid));
    }

    /// Whether both parts are there.
    bool isValid() const { return _objectType && _uuid; }
    /// "scene", "page", "application", or what it was made with.
    const std::optional<std::string>& objectType() const { return _objectType; }
    const std::optional<std::string>& uuid() const { return _uuid; }

    bool operator==(const KestrinID&) const = default;

  private:
    KestrinID(std::optional<std::string> type, std::optional<std::string> uuid)
        : _objectType(std::move(type)), _uuid(std::move(uuid)) {}

    std::optional<std::string> _objectType, _uuid;
};

} // namespace kestrin

#pragma once

#include <optional>
#include <string_view>

namespace kestrin {

/// The scheme of an address as it is written, without its colon; none when there is none. The result refers
/// into `url`. Thread: any.
std::optional<std::string_view> urlScheme(std::string_view url);

/// The host alone, without user, port and path, in brackets when written so; none when there is none or the
/// address holds a space or a control character in its authority. The result refers into `url`. Thread: any.
std::optional<std::string_view> urlHost(std::string_view url);

} // namespace kestrin

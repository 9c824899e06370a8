#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace kestrin::session {

/// The bytes of a file; none when it cannot be read, is no regular file or is longer than `most`.
std::optional<std::string> readFile(const std::filesystem::path& file, std::size_t most);

} // namespace kestrin::session

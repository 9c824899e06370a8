#include "session/FileBytes.h"

#include <fstream>

namespace kestrin::session {

std::optional<std::string> readFile(const std::filesystem::path& file, std::size_t most) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(file, error) || error)
        return {};
    const auto size = std::filesystem::file_size(file, error);
    if (error || size > most)
        return {};
    std::string bytes(std::size_t(size), '\0');
    std::ifstream stream(file, std::ios::binary);
    if (!stream.read(bytes.data(), std::streamsize(bytes.size())))
        return {};
    return bytes;
}

} // namespace kestrin::session

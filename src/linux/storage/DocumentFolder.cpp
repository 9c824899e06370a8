#include "linux/storage/DocumentFolder.h"

#include "linux/storage/FileContents.h"
#include "linux/toolkit/GRef.h"

#include <string_view>

namespace kestrin::gtk {

namespace {

bool isPlainName(const std::string& name) {
    constexpr std::string_view kSeparators("/\0", 2);
    return !name.empty() && name != "." && name != ".." && name.find_first_of(kSeparators) == name.npos;
}

} // namespace

std::optional<std::string> DocumentFolder::read(const std::string& name) const {
    if (!isPlainName(name))
        return std::nullopt;
    const auto file = GRef<GFile>::adopt(g_file_new_for_path((m_folder / name).c_str()));
    return contentsOf(file.get());
}

bool DocumentFolder::write(const std::string& name, std::span<const std::uint8_t> bytes) const {
    if (!isPlainName(name))
        return false;
    return g_file_set_contents((m_folder / name).c_str(), reinterpret_cast<const char*>(bytes.data()),
                               gssize(bytes.size()), nullptr);
}

} // namespace kestrin::gtk

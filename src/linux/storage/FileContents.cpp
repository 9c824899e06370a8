#include "linux/storage/FileContents.h"

#include "linux/toolkit/GRef.h"

namespace kestrin::gtk {

std::optional<std::string> contentsOf(GFile* file) {
    char* bytes = nullptr;
    gsize size = 0;
    if (!g_file_load_contents(file, nullptr, &bytes, &size, nullptr, nullptr))
        return std::nullopt;
    const GText owned(bytes);
    return std::string(bytes, size);
}

} // namespace kestrin::gtk

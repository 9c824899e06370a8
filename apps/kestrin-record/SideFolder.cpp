#include "SideFolder.h"

#include "Ending.h"

#include <unistd.h>

namespace kestrin::record {

namespace fs = std::filesystem;

namespace {

/// Absolute, without a slash at the end.
fs::path cleaned(const fs::path& given) {
    const fs::path path = fs::absolute(given).lexically_normal();
    return path.has_filename() ? path : path.parent_path();
}

} // namespace

SideFolder::SideFolder(const fs::path& place)
    : m_place(cleaned(place)), m_path(m_place.parent_path() / (".part-" + std::to_string(getpid()) + "-" +
                                                               m_place.filename().string())) {
    if (fs::exists(fs::symlink_status(m_place)))
        throw Ending(kFailed, place.string() + ": exists already");
    if (!fs::is_directory(m_place.parent_path()))
        throw Ending(kFailed, m_place.parent_path().string() + ": no such folder");
}

SideFolder::~SideFolder() {
    std::error_code error;
    fs::remove_all(m_path, error);
}

void SideFolder::takePlace() {
    std::error_code error;
    fs::rename(m_path, m_place, error);
    if (error)
        throw Ending(kFailed, m_place.string() + ": " + error.message());
}

} // namespace kestrin::record

#include "linux/storage/PhotoFolder.h"

#include "linux/storage/PhotoDate.h"
#include "linux/toolkit/GRef.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <vector>

namespace kestrin::gtk {

namespace {

/// Fails with EEXIST when there is a file of that name.
int renameToNew(const std::filesystem::path& from, const std::filesystem::path& to) {
    if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0)
        return 0;
    if (errno != EINVAL) // some file systems cannot do it in one step
        return errno;
    if (std::error_code ignored; std::filesystem::exists(to, ignored))
        return EEXIST;
    return std::rename(from.c_str(), to.c_str()) == 0 ? 0 : errno;
}

/// Gives the file the first free of the names "STEM.jpg", "STEM (2).jpg", and so on.
int nameFile(const std::filesystem::path& file, const std::string& stem) {
    int failure = EEXIST;
    for (int number = 1; failure == EEXIST; ++number) {
        const std::string suffix = number == 1 ? "" : " (" + std::to_string(number) + ")";
        failure = renameToNew(file, file.parent_path() / (stem + suffix + ".jpg"));
    }
    return failure;
}

} // namespace

PhotoFolder PhotoFolder::ofPerson() {
    const char* const pictures = g_get_user_special_dir(G_USER_DIRECTORY_PICTURES);
    const auto folder =
        pictures ? std::filesystem::path(pictures) : std::filesystem::path(g_get_home_dir()) / "Pictures";
    return PhotoFolder(folder / "Kestrin");
}

std::optional<std::string> PhotoFolder::add(std::span<const std::uint8_t> jpeg,
                                            std::chrono::system_clock::time_point created) const {
    std::error_code failure;
    std::filesystem::create_directories(m_folder, failure);
    if (failure)
        return m_folder.string() + ": " + failure.message();
    const PhotoDate date(created);
    const std::vector<std::uint8_t> dated = date.writtenInto(jpeg);
    const GText unique(g_uuid_string_random());
    const std::filesystem::path aside = m_folder / ("." + std::string(unique.get()) + ".jpg");
    GFailure written;
    if (!g_file_set_contents(aside.c_str(), reinterpret_cast<const char*>(dated.data()), gssize(dated.size()),
                             written.out()))
        return std::string(written.text());
    const int named = nameFile(aside, "Kestrin " + date.fileName());
    if (named == 0)
        return std::nullopt;
    std::filesystem::remove(aside, failure);
    return m_folder.string() + ": " + std::strerror(named);
}

} // namespace kestrin::gtk

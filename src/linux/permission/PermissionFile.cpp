#include "linux/permission/PermissionFile.h"

#include "linux/storage/BundleStorage.h"
#include "linux/toolkit/GRef.h"

namespace kestrin::gtk {

namespace {

constexpr const char* kGroup = "Allowed";

using KeyFile = GOwned<GKeyFile, g_key_file_unref>;

/// Empty when there is no such file, or a broken one.
KeyFile load(const std::filesystem::path& file) {
    KeyFile loaded(g_key_file_new());
    g_key_file_load_from_file(loaded.get(), file.c_str(), G_KEY_FILE_KEEP_COMMENTS, nullptr);
    return loaded;
}

} // namespace

PermissionFile PermissionFile::ofApplication(const std::string& applicationId) {
    return PermissionFile(applicationDirectory(applicationId) / "permissions.ini");
}

std::optional<bool> PermissionFile::read(const std::string& name) const {
    const KeyFile answers = load(m_file);
    GFailure failure;
    const bool allowed = g_key_file_get_boolean(answers.get(), kGroup, name.c_str(), failure.out());
    return failure.error() ? std::nullopt : std::optional(allowed);
}

std::optional<std::string> PermissionFile::write(const std::string& name, bool allowed) const {
    std::error_code ignored; // writing then says why
    std::filesystem::create_directories(m_file.parent_path(), ignored);
    const KeyFile answers = load(m_file);
    g_key_file_set_boolean(answers.get(), kGroup, name.c_str(), allowed);
    GFailure failure;
    if (g_key_file_save_to_file(answers.get(), m_file.c_str(), failure.out()))
        return std::nullopt;
    return failure.text();
}

std::optional<std::string> PermissionFile::forget() const {
    std::error_code failure;
    std::filesystem::remove(m_file, failure);
    return failure ? std::optional(m_file.string() + ": " + failure.message()) : std::nullopt;
}

} // namespace kestrin::gtk

#include "linux/storage/BundleStorage.h"

#include "linux/storage/FileContents.h"
#include "linux/toolkit/GRef.h"

#include <boost/json.hpp>
#include <libintl.h>

#include <algorithm>
#include <utility>

namespace kestrin::gtk {

namespace {

bool leavesItsFolder(const std::filesystem::path& path) {
    return path.is_absolute() || std::ranges::find(path, "..") != path.end();
}

std::filesystem::path makeDocuments(const std::string& applicationId, platform::LogSink& log) {
    const std::filesystem::path folder = applicationDirectory(applicationId) / "documents";
    std::error_code failure;
    std::filesystem::create_directories(folder, failure);
    if (failure)
        log.write("Kestrin - The documents folder " + folder.string() +
                  " cannot be made: " + failure.message());
    return folder;
}

} // namespace

std::filesystem::path applicationDirectory(const std::string& applicationId) {
    std::string name = applicationId.empty() ? "_" : applicationId;
    std::ranges::replace_if(
        name, [](char c) { return !g_ascii_isalnum(c) && c != '.' && c != '-' && c != '_'; }, '_');
    if (name.find_first_not_of('.') == std::string::npos)
        name = "_";
    return std::filesystem::path(g_get_user_data_dir()) / name;
}

BundleStorage::BundleStorage(std::string bundle, const std::string& applicationId, platform::LogSink& log)
    : m_bundle(std::move(bundle)), m_documents(makeDocuments(applicationId, log)) {
    readInformation(log);
}

std::optional<std::string> BundleStorage::read(const std::string& path) const {
    if (m_bundle.empty() || leavesItsFolder(path))
        return std::nullopt;
    const auto bundle = GRef<GFile>::adopt(g_file_new_for_commandline_arg(m_bundle.c_str()));
    const auto file = GRef<GFile>::adopt(g_file_resolve_relative_path(bundle.get(), path.c_str()));
    return contentsOf(file.get());
}

std::optional<std::string> BundleStorage::bundleResource(const std::string& name,
                                                         const std::string& type) const {
    return read(type.empty() ? name : name + "." + type);
}

void BundleStorage::readInformation(platform::LogSink& log) {
    const auto text = read("info.json");
    if (!text)
        return;
    boost::system::error_code failure;
    const auto value = boost::json::parse(*text, failure);
    if (failure || !value.is_object()) {
        log.write("Kestrin - info.json of the bundle is no JSON object.");
        return;
    }
    for (const auto& [key, item] : value.get_object())
        if (item.is_string())
            m_information[std::string(key)] = std::string(item.get_string());
}

std::optional<std::string> BundleStorage::information(const std::string& key) const {
    const auto found = m_information.find(key);
    return found == m_information.end() ? std::nullopt : std::optional(found->second);
}

std::string BundleStorage::localizedText(const std::string& text) const {
    // The empty text's translation is a catalogue's description of itself.
    return text.empty() ? text : gettext(text.c_str());
}

} // namespace kestrin::gtk

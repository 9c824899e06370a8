#pragma once

#include "linux/storage/DocumentFolder.h"
#include "linux/storage/PhotoFolder.h"
#include "platform/Log.h"
#include "platform/Storage.h"

#include <map>

namespace kestrin::gtk {

/// The main bundle, a folder or a `resource:///prefix`, the application's documents folder under the
/// person's data folder, and the folder of photos among the person's pictures. Thread: any.
class BundleStorage final : public platform::Storage {
  public:
    /// A bundle without `info.json`, or with a broken one, has no information; a broken one is logged.
    BundleStorage(std::string bundle, const std::string& applicationId, platform::LogSink& log);

    std::optional<std::string> bundleResource(const std::string& name,
                                              const std::string& type) const override;
    std::optional<std::string> information(const std::string& key) const override;
    /// By the text domain that the application chose.
    std::string localizedText(const std::string& text) const override;
    std::optional<std::string> readDocument(const std::string& name) const override {
        return m_documents.read(name);
    }
    bool writeDocument(const std::string& name, std::span<const std::uint8_t> bytes) override {
        return m_documents.write(name, bytes);
    }
    std::optional<std::string> addPhoto(std::span<const std::uint8_t> jpeg,
                                        std::chrono::system_clock::time_point created) override {
        return m_photos.add(jpeg, created);
    }

  private:
    std::optional<std::string> read(const std::string& path) const;
    void readInformation(platform::LogSink& log);

    const std::string m_bundle;
    const DocumentFolder m_documents;
    const PhotoFolder m_photos = PhotoFolder::ofPerson();
    std::map<std::string, std::string, std::less<>> m_information;
};

/// The folder that is the application's own under the person's data folder. Letters outside those of an
/// application id become `_`, so that no id leaves the data folder.
std::filesystem::path applicationDirectory(const std::string& applicationId);

} // namespace kestrin::gtk
